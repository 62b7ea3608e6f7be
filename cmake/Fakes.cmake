# Small 64-bit Windows console programs that stand in for a Windows compiler and programmer in the tests
# that run them through wine, and a 32-bit build of the compiler, as every real PicBasic compiler is one.
# Without MinGW they are not built, and those tests skip.
if(NOT QB_TESTS AND NOT QB_BENCH)
  return()
endif()
find_program(QB_MINGW_CC x86_64-w64-mingw32-gcc)
if(NOT QB_MINGW_CC)
  message(STATUS "MinGW not found: the Windows test programs are not built")
  return()
endif()

set(_fakes_dir ${CMAKE_CURRENT_BINARY_DIR}/fakes)
set(_fakes "")
foreach(_fake fakepbp fakeprog)
  set(_src ${CMAKE_CURRENT_SOURCE_DIR}/tests/fakes/${_fake}.c)
  add_custom_command(OUTPUT ${_fakes_dir}/${_fake}.exe
    COMMAND ${CMAKE_COMMAND} -E make_directory ${_fakes_dir}
    COMMAND ${QB_MINGW_CC} -municode -O2 -Wall -o ${_fakes_dir}/${_fake}.exe ${_src}
    DEPENDS ${_src}
    COMMENT "Windows test program ${_fake}.exe")
  list(APPEND _fakes ${_fakes_dir}/${_fake}.exe)
endforeach()
find_program(QB_MINGW32_CC i686-w64-mingw32-gcc)
if(QB_MINGW32_CC)
  set(_src ${CMAKE_CURRENT_SOURCE_DIR}/tests/fakes/fakepbp.c)
  add_custom_command(OUTPUT ${_fakes_dir}/fakepbp32.exe
    COMMAND ${CMAKE_COMMAND} -E make_directory ${_fakes_dir}
    COMMAND ${QB_MINGW32_CC} -municode -O2 -Wall -o ${_fakes_dir}/fakepbp32.exe ${_src}
    DEPENDS ${_src}
    COMMENT "Windows test program fakepbp32.exe (32-bit)")
  list(APPEND _fakes ${_fakes_dir}/fakepbp32.exe)
else()
  message(STATUS "32-bit MinGW not found: the 32-bit Windows test compiler is not built")
endif()
add_custom_target(qb_fakes ALL DEPENDS ${_fakes})

foreach(_t test_integration test_platform bench_compile_click)
  if(TARGET ${_t})
    add_dependencies(${_t} qb_fakes)
    target_compile_definitions(${_t} PRIVATE QB_FAKES_DIR="${_fakes_dir}")
  endif()
endforeach()
