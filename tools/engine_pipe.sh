# Talking to an engine started as the coprocess ENGINE (`coproc ENGINE { exec "$engine"; }`), for the tools'
# scripts: sourced, not run.

# Sends each argument as a line.
send() { printf '%s\n' "$@" >&"${ENGINE[1]}"; }

# Reads lines until one that begins with $1; ends the script when the engine says nothing for 120 s.
await() {
  local line
  while IFS= read -r -t 120 line <&"${ENGINE[0]}"; do
    case $line in "$1"*) return 0 ;; esac
  done
  echo "no $1 from the engine" >&2
  exit 2
}
