// Defines one table of kernels. Compiled once for each instruction set, with ORVANEL_VARIANT as its name. Only the
// table has external linkage.
#include "optics/kernels/centred.h"
#include "optics/kernels/image.h"
#include "optics/kernels/kernels.h"
#include "optics/kernels/modulation.h"
#include "optics/kernels/pupil.h"
#include "optics/kernels/spectrum.h"
#include "optics/kernels/wavefront.h"

#define ORVANEL_STRING(name) #name
#define ORVANEL_NAME(name) ORVANEL_STRING(name)

namespace orvanel::ORVANEL_VARIANT {

extern const Kernels kKernels;
const Kernels kKernels = {
    .name = ORVANEL_NAME(ORVANEL_VARIANT),
    .synthesize = Synthesize,
    .intensity = Intensity,
    .recentre = Recentre,
    .transform = Transform,
    .centredTransform = CentredTransform,
    .realTransform = RealTransform,
    .realRows = RealRows,
    .transferFunction = TransferFunction,
    .modulation = Modulation,
    .phase = Phase,
    .unfold = Unfold,
    .image = Image,
    .imageThroughPlanes = ImageThroughPlanes,
    .drawRing = DrawRing,
};

}  // namespace orvanel::ORVANEL_VARIANT
