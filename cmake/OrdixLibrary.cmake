# ordix_layer(NAME FOLDER [DEPENDS lib ...]): the static library ordix_NAME
# from the .cpp files directly in FOLDER (subfolders are not taken).
#
# Every source includes headers as "folder/file.h". A layer sees only its own
# folder and the folders of the layers it links: its include path is a folder
# of the build tree holding one link, FOLDER -> the source folder, and the
# libraries it depends on pass theirs on. An include of a layer above is not
# found, and the build stops there.
function(ordix_layer name folder)
  cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
  set(view ${CMAKE_BINARY_DIR}/layers/${folder})
  file(MAKE_DIRECTORY ${view})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${view}/${folder} SYMBOLIC COPY_ON_ERROR)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  add_library(ordix_${name} STATIC ${sources})
  target_include_directories(ordix_${name} PUBLIC ${view})
  target_link_libraries(ordix_${name} PUBLIC ${arg_DEPENDS})
  # Limbs are 16 bits and counts 32: a narrowing the code does not spell out
  # is a warning in the core (the GUI's Qt sizes would drown it).
  if(NOT MSVC)
    target_compile_options(ordix_${name} PRIVATE -Wconversion)
  endif()
endfunction()
