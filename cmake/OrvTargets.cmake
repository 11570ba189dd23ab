# Functions that give every target of the house the same shape.
# Sources are found by folder, so that a new class needs no change here.

function(orv_collect_sources out)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.c ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  foreach(pattern ${ARGN})
    list(FILTER sources EXCLUDE REGEX "${pattern}")
  endforeach()
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

function(orv_prepare target)
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
endfunction()

# orv_library(<name> LINK <public libraries> [PRIVATE <libraries>] [PCH <headers>] [EXCLUDE <regular expressions>])
function(orv_library name)
  cmake_parse_arguments(arg "" "" "LINK;PRIVATE;PCH;EXCLUDE" ${ARGN})
  orv_collect_sources(sources ${arg_EXCLUDE})
  add_library(${name} SHARED ${sources})
  orv_prepare(${name})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  string(TOUPPER ${name} upper)
  target_compile_definitions(${name} PRIVATE ${upper}_LIBRARY)
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE})
  if(arg_PCH)
    target_precompile_headers(${name} PRIVATE ${arg_PCH})
  endif()
endfunction()

# One test program per source file Tst*.cpp of the current folder and below.
function(orv_tests)
  cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/Tst*.cpp)
  foreach(source ${sources})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    orv_prepare(${name})
    target_link_libraries(${name} PRIVATE ${arg_LINK} Qt5::Test)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name})
    # Every test has settings, caches and data of its own, so that tests can run side by side.
    set(home ${CMAKE_BINARY_DIR}/tests/home/${name})
    set_tests_properties(${name} PROPERTIES
      ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ORV_RESOURCES=${CMAKE_BINARY_DIR}/share/orvi;ORV_PLUGINS=${ORV_PLUGIN_DIRECTORY};ORV_SETTINGS=${home}/settings.ini;XDG_CACHE_HOME=${home}/cache;XDG_DATA_HOME=${home}/data"
      TIMEOUT 600)
  endforeach()
endfunction()
