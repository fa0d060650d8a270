// Writes a file to stdout in pieces, for run-test: Pieces FILE SIZE. Ends with exit code 9.

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv) {
  FILE* const file = argc == 3 ? std::fopen(argv[1], "rb") : nullptr;
  if (!file) {
    return 1;
  }
  std::vector<char> piece(std::strtoul(argv[2], nullptr, 10));
  ::_setmode(::_fileno(stdout), _O_BINARY);
  for (size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), file)) > 0;) {
    std::fwrite(piece.data(), 1, size, stdout);
    std::fflush(stdout);
  }
  std::fclose(file);
  return 9;
}
