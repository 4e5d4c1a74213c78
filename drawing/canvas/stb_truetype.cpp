// Compiles stb_truetype, the only copy in the program.
#define STB_TRUETYPE_IMPLEMENTATION
#include <stb_truetype.h>
