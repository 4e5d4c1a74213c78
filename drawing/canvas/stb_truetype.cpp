// The one copy of stb_truetype's code.
#define STB_TRUETYPE_IMPLEMENTATION
#include <stb_truetype.h>
