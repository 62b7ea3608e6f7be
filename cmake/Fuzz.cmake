# libFuzzer targets for the parsers (tests/fuzz), built with clang and -DQB_FUZZ=ON only. Every library
# of the project is then instrumented for coverage and built with AddressSanitizer and
# UndefinedBehaviorSanitizer, so the whole build directory is a fuzzing one: scripts/fuzz keeps its own.
option(QB_FUZZ "Build the libFuzzer targets (clang only)" OFF)

# One target per source file tests/fuzz/<name>.cpp, linking the folder library that holds what it reads.
set(_qb_fuzz_lib_devices qb_devices)
set(_qb_fuzz_lib_programmer qb_programmer)
set(_qb_fuzz_lib_settings qb_core)
set(_qb_fuzz_lib_loader qb_document)
set(_qb_fuzz_lib_textformat qb_document)
set(_qb_fuzz_lib_compilescript qb_compile)
set(_qb_fuzz_lib_messages qb_compile)
set(_qb_fuzz_lib_asmtags qb_compile)
set(_qb_fuzz_lib_handover qb_platform)
set(_qb_fuzz_lib_scanner qb_language)
set(_qb_fuzz_lib_terminal qb_terminal)
file(GLOB _qb_fuzz_srcs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tests/fuzz/*.cpp)

# Without libFuzzer the suite replays each target over its seed corpus, with the suite's own compiler and
# sanitizers: every fault found so far stays found, in seconds.
if(NOT QB_FUZZ)
  if(QB_TESTS)
    foreach(src IN LISTS _qb_fuzz_srcs)
      get_filename_component(name ${src} NAME_WE)
      add_executable(fuzzseeds_${name} ${src} ${CMAKE_CURRENT_SOURCE_DIR}/tests/fuzz/replay/ReplayMain.cpp)
      target_include_directories(fuzzseeds_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/tests)
      target_link_libraries(fuzzseeds_${name} PRIVATE ${_qb_fuzz_lib_${name}} qb_resources Qt6::Widgets)
      add_test(NAME fuzz.${name}.seeds
               COMMAND fuzzseeds_${name} ${CMAKE_CURRENT_SOURCE_DIR}/tests/fuzz/corpus/${name})
      set_tests_properties(fuzz.${name}.seeds PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 300)
    endforeach()
  endif()
  return()
endif()
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  message(WARNING "QB_FUZZ needs clang (CXX=clang++): the fuzz targets are not built")
  return()
endif()

set(_qb_fuzz_san -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)

# The targets made so far (the folder libraries, the resources, the program) get the same flags.
get_property(_qb_targets DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} PROPERTY BUILDSYSTEM_TARGETS)
foreach(t IN LISTS _qb_targets)
  get_target_property(_type ${t} TYPE)
  if(_type STREQUAL "STATIC_LIBRARY" OR _type STREQUAL "OBJECT_LIBRARY")
    target_compile_options(${t} PRIVATE ${_qb_fuzz_san} -fsanitize=fuzzer-no-link)
  elseif(_type STREQUAL "EXECUTABLE")
    target_compile_options(${t} PRIVATE ${_qb_fuzz_san} -fsanitize=fuzzer-no-link)
    target_link_options(${t} PRIVATE ${_qb_fuzz_san})
  endif()
endforeach()


add_custom_target(fuzz)
foreach(src IN LISTS _qb_fuzz_srcs)
  get_filename_component(name ${src} NAME_WE)
  if(NOT DEFINED _qb_fuzz_lib_${name})
    message(FATAL_ERROR "tests/fuzz/${name}.cpp: no library named for it in cmake/Fuzz.cmake")
  endif()
  add_executable(fuzz_${name} ${src})
  target_include_directories(fuzz_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/tests)
  target_compile_options(fuzz_${name} PRIVATE ${_qb_fuzz_san} -fsanitize=fuzzer)
  target_link_options(fuzz_${name} PRIVATE ${_qb_fuzz_san} -fsanitize=fuzzer)
  target_link_libraries(fuzz_${name} PRIVATE ${_qb_fuzz_lib_${name}} qb_resources Qt6::Widgets)
  add_dependencies(fuzz fuzz_${name})
endforeach()
