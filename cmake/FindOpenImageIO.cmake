# Finds the image library by its header and its two libraries. Its own package file asks for command-line tools that
# the development package doesn't bring, so that it fails on machines where nothing is missing.
find_path(OpenImageIO_INCLUDE_DIR OpenImageIO/imageio.h)
find_library(OpenImageIO_LIBRARY OpenImageIO)
find_library(OpenImageIO_UTIL_LIBRARY OpenImageIO_Util)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OpenImageIO
  REQUIRED_VARS OpenImageIO_LIBRARY OpenImageIO_UTIL_LIBRARY OpenImageIO_INCLUDE_DIR)

if(OpenImageIO_FOUND AND NOT TARGET OpenImageIO::OpenImageIO)
  add_library(OpenImageIO::OpenImageIO UNKNOWN IMPORTED)
  set_target_properties(OpenImageIO::OpenImageIO PROPERTIES
    IMPORTED_LOCATION "${OpenImageIO_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${OpenImageIO_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "${OpenImageIO_UTIL_LIBRARY}")
endif()
