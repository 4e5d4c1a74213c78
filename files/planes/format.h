// The table of file formats for planes, by their names on the command line.
#ifndef ORVANEL_FILES_PLANES_FORMAT_H
#define ORVANEL_FILES_PLANES_FORMAT_H

#include <span>
#include <string>
#include <string_view>

#include "base/layers.h"
#include "files/planes/plane_set.h"

namespace orvanel::files {

struct Format {
  std::string_view name;     // "npy"
  std::string_view ending;   // ".npy", appended to a plane's name
  bool together;             // one file with all planes of an eye instead of one for each plane
  bool greyOnly;             // accepts only planes that are grey pictures
  std::string_view library;  // that writes it; empty if the program always has it

  // The bytes of a file; null if the program is built without the library.
  std::string (*encode)(const PlaneSet& set);
};

// The name of the 8-bit PNG pictures, which are always written.
constexpr const char* kPictures = "png8";

// The name of the figures as vector graphics, which are not formats of planes.
constexpr const char* kVectors = "svg";

// All other formats, including those that this program is built without.
std::span<const Format> Formats();

// The format of this name. Throws Error if there is none, or if the program is built without it.
const Format& FormatNamed(std::string_view name);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_FORMAT_H
