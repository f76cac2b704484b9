// Placeholder until this tool is written.
int main() { return 0; }
