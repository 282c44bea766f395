# What every target of the project is compiled with.
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(marklet_options INTERFACE)
target_include_directories(marklet_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(marklet_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fno-strict-aliasing)
# GCC 12 sees overlapping copies inside std::string's own operator+ where none can be.
target_compile_options(marklet_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# 32-bit float steps are part of the results: no fused multiply-add, no x87 excess precision.
target_compile_options(marklet_options INTERFACE -ffp-contract=off)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_options(marklet_options INTERFACE -msse2 -mfpmath=sse)
endif()
if(MARKLET_SANITIZE)
  target_compile_options(marklet_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(marklet_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  target_compile_definitions(marklet_options INTERFACE UNICODE _UNICODE WINVER=0x0601 _WIN32_WINNT=0x0601 NOMINMAX)
  target_link_options(marklet_options INTERFACE -static)
endif()
