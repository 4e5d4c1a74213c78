// The layers' namespaces, one on top of the other: code of a layer finds the names of those below it, not of those
// above. The base, optics and matrices are in the namespace orvanel itself, where all layers find them.
#ifndef ORVANEL_BASE_LAYERS_H
#define ORVANEL_BASE_LAYERS_H

namespace orvanel {

namespace eye {}
namespace targets {
using namespace eye;
}
namespace models {
using namespace targets;
}
namespace metrics {
using namespace models;
}
namespace evaluation {
using namespace metrics;
}
namespace files {
using namespace evaluation;
}
namespace drawing {
using namespace files;
}
namespace cli {
using namespace drawing;
}

}  // namespace orvanel

#endif  // ORVANEL_BASE_LAYERS_H
