// Worker threads compress planes; the writer only appends chunks.
#include "files/planes/hdf5_stack.h"

#include "base/error.h"

#if ORVANEL_WITH_HDF5

#include <zlib.h>

#include <array>
#include <bit>
#include <limits>
#include <list>

#include "files/planes/hdf5_handle.h"

namespace orvanel::files {
namespace {

constexpr unsigned kLevel = 6;

}  // namespace

// HDF5's filters: shuffle (all first bytes, then all second bytes, ...) and deflate.
std::string CompressedPlane(const Plane& plane) {
  static_assert(std::endian::native == std::endian::little);
  const std::size_t samples = plane.size();
  std::vector<unsigned char> shuffled(sizeof(double) * samples);
  const auto* const bytes = reinterpret_cast<const unsigned char*>(plane.data());
  for (std::size_t b = 0; b < sizeof(double); ++b) {
    for (std::size_t i = 0; i < samples; ++i) shuffled[b * samples + i] = bytes[sizeof(double) * i + b];
  }
  uLongf size = compressBound(shuffled.size());
  std::string compressed(size, '\0');
  if (compress2(reinterpret_cast<Bytef*>(compressed.data()), &size, shuffled.data(), shuffled.size(), kLevel) != Z_OK) {
    throw Error("cannot compress a plane: zlib refuses");
  }
  compressed.resize(size);
  compressed.shrink_to_fit();
  return compressed;
}

struct Hdf5Stack::State {
  Handle file = CreateInMemory();
  std::list<Handle> planes;
  std::vector<std::array<hsize_t, 2>> shapes;  // of each kind: rows, columns
  hsize_t eyes = 0;
};

Hdf5Stack::Hdf5Stack(const std::vector<StackedPlane>& kinds) : state_(std::make_unique<State>()) {
  for (const StackedPlane& kind : kinds) {
    const auto rows = static_cast<hsize_t>(kind.rows), columns = static_cast<hsize_t>(kind.columns);
    const hsize_t none[] = {0, rows, columns}, most[] = {H5S_UNLIMITED, rows, columns}, one[] = {1, rows, columns};
    const double missing = std::numeric_limits<double>::quiet_NaN();
    const Handle space(H5Screate_simple(3, none, most), H5Sclose);
    const Handle properties(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
    Require(H5Pset_obj_track_times(properties, false));
    Require(H5Pset_chunk(properties, 3, one));
    Require(H5Pset_shuffle(properties));
    Require(H5Pset_deflate(properties, kLevel));
    Require(H5Pset_fill_value(properties, H5T_NATIVE_DOUBLE, &missing));
    state_->shapes.push_back({rows, columns});
    state_->planes.emplace_back(
        H5Dcreate2(state_->file, kind.name.c_str(), H5T_IEEE_F64LE, space, H5P_DEFAULT, properties, H5P_DEFAULT),
        H5Dclose);
    WriteText(state_->planes.back(), "description", kind.description);
    WriteText(state_->planes.back(), "units", kind.unit);
    WriteText(state_->planes.back(), "view", kind.view);
  }
}

Hdf5Stack::~Hdf5Stack() = default;

void Hdf5Stack::Add(const std::vector<std::string>& compressed) {
  const hsize_t offset[] = {state_->eyes, 0, 0};
  ++state_->eyes;
  std::size_t i = 0;
  for (const Handle& plane : state_->planes) {
    const hsize_t shape[] = {state_->eyes, state_->shapes[i][0], state_->shapes[i][1]};
    Require(H5Dset_extent(plane, shape));
    if (!compressed.empty()) {
      Require(H5Dwrite_chunk(plane, H5P_DEFAULT, 0, offset, compressed[i].size(), compressed[i].data()));
    }
    ++i;
  }
}

void Hdf5Stack::AddNumbers(const std::string& name, const std::string& description,
                           const std::vector<double>& numbers) {
  const hsize_t count = numbers.size();
  const Handle space(H5Screate_simple(1, &count, nullptr), H5Sclose);
  const Handle properties(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
  Require(H5Pset_obj_track_times(properties, false));
  const Handle dataset(
      H5Dcreate2(state_->file, name.c_str(), H5T_IEEE_F64LE, space, H5P_DEFAULT, properties, H5P_DEFAULT), H5Dclose);
  Require(H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.data()));
  WriteText(dataset, "description", description);
}

std::string Hdf5Stack::Finish() {
  state_->planes.clear();
  return ImageOf(state_->file);
}

}  // namespace orvanel::files

#else  // unreachable: the format is refused by its name

namespace orvanel::files {

struct Hdf5Stack::State {};

std::string CompressedPlane(const Plane& /*plane*/) { throw Error("made without libhdf5"); }
Hdf5Stack::Hdf5Stack(const std::vector<StackedPlane>& /*kinds*/) { throw Error("made without libhdf5"); }
Hdf5Stack::~Hdf5Stack() = default;
void Hdf5Stack::Add(const std::vector<std::string>& /*compressed*/) {}
void Hdf5Stack::AddNumbers(const std::string& /*name*/, const std::string& /*description*/,
                           const std::vector<double>& /*numbers*/) {}
std::string Hdf5Stack::Finish() { return {}; }

}  // namespace orvanel::files

#endif
