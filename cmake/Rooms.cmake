# Flags that every target shares, and the one way in which a room is made. The presets for development make warnings
# errors (CMAKE_COMPILE_WARNING_AS_ERROR); a build for use must not break on what a newer compiler or Qt warns about.

define_property(TARGET PROPERTY HARBRIX_IS_TEST INITIALIZE_FROM_VARIABLE HARBRIX_IS_TEST
  BRIEF_DOCS "The target is a test, not code under test")

add_library(harbrix_flags INTERFACE)
target_compile_options(harbrix_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override
  -fdiagnostics-color=auto)
# Crash reports and the journal tell of source files; where somebody built them is not for others to know. Of the two
# rules the later one is tried first. Tests find their samples by the full path.
target_compile_options(harbrix_flags INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:HARBRIX_IS_TEST>>>:
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}=.>)
# A program shares the precompiled header of the libraries, which has to be compiled the same way (g++ 14 minds).
target_compile_options(harbrix_flags INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-fPIC>)
target_compile_definitions(harbrix_flags INTERFACE
  HARBRIX_VERSION="${PROJECT_VERSION}"
  # What later versions of Qt deprecate has no successor in 6.4 yet.
  QT_WARN_DEPRECATED_UP_TO=0x060400 QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
  QT_NO_CAST_FROM_BYTEARRAY)
if(CMAKE_UNITY_BUILD)
  # A file that is included into another is taken for a header by this warning.
  target_compile_options(harbrix_flags INTERFACE -Wno-subobject-linkage)
endif()
if(HARBRIX_SANITIZERS)
  # Instrumented moves of variants look uninitialised to g++ 12, so that warning is left to plain builds.
  target_compile_options(harbrix_flags INTERFACE
    -fsanitize=${HARBRIX_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=undefined
    -Wno-maybe-uninitialized
    # Checking GoogleTest's templates for undefined behaviour would double the time that the tests take to build, and
    # optimising them takes a quarter of it.
    "$<$<BOOL:$<TARGET_PROPERTY:HARBRIX_IS_TEST>>:-fno-sanitize=undefined;-O0>")
  target_link_options(harbrix_flags INTERFACE -fsanitize=${HARBRIX_SANITIZERS})
endif()

# harbrix_room(name LINKS targets... [EXCLUDE files...]): a static library of all sources in the current
# folder. Its link list is the rule for what it may include: a room sees the rooms it links, no others.
function(harbrix_room name)
  cmake_parse_arguments(ROOM "" "" "LINKS;EXCLUDE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp *.h)
  foreach(file ${ROOM_EXCLUDE})
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC harbrix_flags ${ROOM_LINKS})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  if(NOT name STREQUAL base)
    target_precompile_headers(${name} REUSE_FROM base)
  endif()
endfunction()
