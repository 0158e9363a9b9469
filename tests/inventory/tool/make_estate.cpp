#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

#include <quillmate/files/paths.h>

#include "inventory/estate.h"
#include "places.h"

/// make_estate FOLDER [FILES [SEED]]
int main(int argc, char** argv) {
  if (argc < 2 || argc > 4) {
    std::cerr << "Aufruf: make_estate ORDNER [DATEIEN [SAAT]]\n";
    return 2;
  }
  try {
    quillmate::inventory::EstateOptions options;
    if (argc > 2) options.files = std::stoul(argv[2]);
    if (argc > 3) options.seed = static_cast<std::uint32_t>(std::stoul(argv[3]));
    options.sample = quillmate::tests::SourceFolder() / "samples" / "Lagerverwaltung";
    const auto estate = quillmate::inventory::MakeEstate(quillmate::files::PathFromText(argv[1]), options);
    std::cout << estate.size() << " Dateien in " << argv[1] << "\n";
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
  }
}
