// Handles, errors and memory files of HDF5's C interface, for both HDF5 writers.
#ifndef ORVANEL_FILES_PLANES_HDF5_HANDLE_H
#define ORVANEL_FILES_PLANES_HDF5_HANDLE_H

#include <hdf5.h>

#include <string>

#include "base/error.h"
#include "base/layers.h"

namespace orvanel::files {

// An identifier of the library, closed by the destructor.
class Handle {
 public:
  using Release = herr_t (*)(hid_t);

  Handle(hid_t id, Release release) : id_(id), release_(release) {
    if (id_ < 0) throw Error("cannot make an HDF5 file: libhdf5 refuses");
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { release_(id_); }

  operator hid_t() const { return id_; }  // NOLINT(google-explicit-constructor): it stands where the C interface has it

 private:
  hid_t id_;
  Release release_;
};

inline void Require(herr_t status) {
  if (status < 0) throw Error("cannot make an HDF5 file: libhdf5 refuses");
}

inline void WriteAttribute(hid_t place, const std::string& name, hid_t type, hid_t space, hid_t typeInMemory,
                           const void* value) {
  const Handle attribute(H5Acreate2(place, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
  Require(H5Awrite(attribute, typeInMemory, value));
}

// Of variable length, because an attribute of fixed length is limited to 64 KiB.
inline void WriteText(hid_t place, const std::string& name, const std::string& text) {
  const Handle type(H5Tcopy(H5T_C_S1), H5Tclose);
  Require(H5Tset_size(type, H5T_VARIABLE));
  Require(H5Tset_cset(type, H5T_CSET_UTF8));
  const Handle space(H5Screate(H5S_SCALAR), H5Sclose);
  const char* const characters = text.c_str();
  WriteAttribute(place, name, type, space, type, &characters);
}

// An empty file in memory.
inline Handle CreateInMemory() {
  Require(H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr));  // it would print errors
  constexpr std::size_t kIncrement = 1 << 20;
  const Handle access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
  Require(H5Pset_fapl_core(access, kIncrement, false));
  const Handle creation(H5Pcreate(H5P_FILE_CREATE), H5Pclose);
  Require(H5Pset_obj_track_times(creation, false));
  return {H5Fcreate("planes.h5", H5F_ACC_TRUNC, creation, access), H5Fclose};
}

// The bytes of a file in memory.
inline std::string ImageOf(hid_t file) {
  Require(H5Fflush(file, H5F_SCOPE_GLOBAL));
  const ssize_t size = H5Fget_file_image(file, nullptr, 0);
  Require(size > 0 ? 0 : -1);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  Require(H5Fget_file_image(file, bytes.data(), bytes.size()) == size ? 0 : -1);
  return bytes;
}

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLANES_HDF5_HANDLE_H
