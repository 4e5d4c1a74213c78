// Compiles stb_image, a decoder of pictures that shares no code with ours.
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include <stb_image.h>
