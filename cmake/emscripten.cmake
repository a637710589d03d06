# Cross build for WebAssembly, by the distribution's Emscripten.
include("/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake")
