// The file formats for planes, by the names that they have on the command line.
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
  std::string_view ending;   // ".npy", what follows a plane's name in that of its file
  bool together;             // one file with all planes of an eye, not one for each
  bool greyOnly;             // holds only planes that are grey pictures
  std::string_view library;  // what it is made with; empty where that is always there

  // The bytes of a file; null where the program is built without the library.
  std::string (*encode)(const PlaneSet& set);
};

// The name of the PNG pictures of 8 bits, which are always written.
constexpr const char* kPictures = "png8";

// All formats beside them, those that this program is built without among them.
std::span<const Format> Formats();

// The format of this name. Throws Error where there is none, or where the program is built without it.
const Format& FormatNamed(std::string_view name);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_FORMAT_H
