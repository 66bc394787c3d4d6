# Compiler and linker options of everything in this tree.
add_library(kevazor_options INTERFACE)
target_compile_features(kevazor_options INTERFACE cxx_std_20)
target_compile_options(kevazor_options INTERFACE
  -Wall -Wextra -Werror -Wformat=2 -Wshadow -Wundef -Wcast-qual -Wconversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
  -fvisibility=hidden
  $<$<COMPILE_LANGUAGE:CXX>:-fvisibility-inlines-hidden>
)
# Of these g++ 12 finds some in its own library where there are none.
target_compile_options(kevazor_options INTERFACE
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict -Wno-stringop-overflow -Wno-dangling-pointer>)
# And these of what comes from a precompiled header.
set(kevazor_precompiled_options
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-array-bounds -Wno-stringop-overread>)
target_link_options(kevazor_options INTERFACE LINKER:--as-needed)

if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # With -z now below there is nothing left for a PLT to do but to cost a jump at each call.
  target_compile_options(kevazor_options INTERFACE
    -fno-plt -D_FORTIFY_SOURCE=2 -fstack-protector-strong -fstack-clash-protection -fcf-protection)
  target_link_options(kevazor_options INTERFACE
    LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endif()

if(KEVAZOR_COVERAGE)
  target_compile_options(kevazor_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(kevazor_options INTERFACE --coverage)
endif()

if(KEVAZOR_SANITIZE)
  target_compile_options(kevazor_options INTERFACE
    -fsanitize=${KEVAZOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kevazor_options INTERFACE -fsanitize=${KEVAZOR_SANITIZE})
endif()

# The programs wait for others most of their time; what counts is that they are built soon.
function(kevazor_build_soon target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1>)
endfunction()

# The libraries are what the sanitizers look at: quick, and open to the fuzz targets.
# The programs around them are not optimised in such a build, which halves its time.
function(kevazor_examine target)
  if(KEVAZOR_SANITIZE)
    target_compile_options(${target} PRIVATE -O1)
  endif()
  if(KEVAZOR_SANITIZE MATCHES "address" AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# Gives a shared library its export map and no other way out or in: a name it
# needs and nobody defines fails the link, except for the sanitizers' own.
function(kevazor_set_exports target map)
  target_link_options(${target} PRIVATE LINKER:--version-script=${map})
  if(NOT KEVAZOR_SANITIZE)
    target_link_options(${target} PRIVATE LINKER:--no-undefined LINKER:-Bsymbolic-functions)
  endif()
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
endfunction()
