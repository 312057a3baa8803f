# Included by the top-level CMakeLists.txt when VELLUM_FUZZ is on, before any target: every
# library is built with libFuzzer's coverage instrumentation and with AddressSanitizer and
# UndefinedBehaviorSanitizer (undefined behaviour aborts the run). The fuzz targets themselves
# link libFuzzer (fuzz/CMakeLists.txt).
if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "VELLUM_FUZZ needs clang with libFuzzer (Debian: clang and "
        "libclang-rt-14-dev), not ${CMAKE_CXX_COMPILER_ID}; configure with "
        "-DCMAKE_CXX_COMPILER=clang++, or run scripts/fuzz.sh")
endif()

add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
add_link_options(-fsanitize=address,undefined)
