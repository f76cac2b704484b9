// fuzz/work_folder.h — the working folder of the fuzz targets that run a whole engine: a temporary folder,
// removed at exit, holding a small "Aperture.txt", and a sink for the engine's output.
#pragma once
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace vorlek::fuzz {

inline std::string workFolder;

// Makes the folder, moves into it, writes the book; returns /dev/null open for writing. Ends the process
// when any of it fails.
inline FILE* EnterWorkFolder(const char* book) {
  char folder[] = "/tmp/vorlek-fuzz-XXXXXX";
  if (!mkdtemp(folder) || chdir(folder) != 0) {
    std::perror("vorlek fuzz: working folder");
    std::exit(1);
  }
  workFolder = folder;
  std::atexit([] {
    std::error_code ignored;
    std::filesystem::remove_all(workFolder, ignored);
  });
  FILE* file = std::fopen("Aperture.txt", "w");
  if (!file) std::exit(1);
  std::fputs(book, file);
  std::fclose(file);
  FILE* sink = std::fopen("/dev/null", "w");
  if (!sink) std::exit(1);
  return sink;
}

}  // namespace vorlek::fuzz
