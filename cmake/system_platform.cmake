# The platform's own base library, as -D KEVAZOR_PLATFORM=system builds against it;
# CMAKE_PREFIX_PATH or CMAKE_LIBRARY_PATH says where it is when it is not in a usual place.
find_library(KEVACORE_LIBRARY NAMES kevacore libkevacore.so.6 REQUIRED)
add_library(kevacore SHARED IMPORTED GLOBAL)
set_target_properties(kevacore PROPERTIES
  IMPORTED_LOCATION ${KEVACORE_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/include)
