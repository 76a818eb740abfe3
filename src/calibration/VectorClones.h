// Loops over whole rows are compiled twice, for any x86-64 processor and for those with AVX2; the program takes the
// faster one that the machine can run. Measured: 2 to 2.5 times the speed. Both give the same results bit for bit,
// because the loops use integers and correctly rounded operations only and nothing is ever fused.
//
// Sanitizers instrument what chooses the function before they are ready for it, and clang 14 has no such clones: there
// the loops are compiled once.
#pragma once

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__)
#define TESSALY_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define TESSALY_VECTOR_CLONES
#endif
