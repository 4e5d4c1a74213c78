// One table of the physical model's kernels. Compiled once for each instruction set, with ORVANEL_VARIANT its name; the
// table is all that this file shows.
#include "models/physical/kernels/chords.h"
#include "models/physical/kernels/kernels.h"
#include "models/physical/kernels/planes.h"

#define ORVANEL_STRING(name) #name
#define ORVANEL_NAME(name) ORVANEL_STRING(name)

namespace orvanel::ORVANEL_VARIANT {

extern const physical::ChordKernels kChordKernels;
const physical::ChordKernels kChordKernels = {
    .name = ORVANEL_NAME(ORVANEL_VARIANT),
    .width = kWidth,
    .fieldOnChord = FieldOnChord,
    .chordMoments = ChordMoments,
    .columnWaves = ColumnWaves,
    .columnSums = ColumnSums,
    .rowsFromSums = RowsFromSums,
    .fieldOnRow = FieldOnRow,
    .powerSpectrum = PowerSpectrum,
    .fieldSpectrum = FieldSpectrum,
    .weighSpectrum = WeighSpectrum,
    .powerSums = PowerSums,
    .halfSpectraOfRows = HalfSpectraOfRows,
    .columnsOfHalf = ColumnsOfHalf,
    .filterColumns = FilterColumns,
    .rowsOfHalf = RowsOfHalf,
    .rowWithoutSurround = RowWithoutSurround,
    .gatherRows = GatherRows,
    .gatherColumns = GatherColumns,
    .splinesAlongRow = SplinesAlongRow,
    .addSplines = AddSplines,
};

}  // namespace orvanel::ORVANEL_VARIANT
