// SPDX-License-Identifier: MIT
// What the manager does to find out which extensions a compiler knows.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

const Texts KNOWN = {
    "cl_khr_global_int32_base_atomics",
    "cl_khr_global_int32_extended_atomics",
    "cl_khr_local_int32_base_atomics",
    "cl_khr_local_int32_extended_atomics",
    "cl_khr_byte_addressable_store",
    "cl_khr_3d_image_writes",
    "cl_khr_fp64",
    "cl_khr_int64_base_atomics",
    "cl_khr_int64_extended_atomics",
    "cl_khr_fp16",
};

const Texts UNKNOWN = {
    "cl_khr_gl_sharing",        "cl_khr_icd",
    "cl_khr_egl_event",         "cl_khr_egl_image",
    "cl_qrx_core_id",           "cl_qrx_printf",
    "cl_qrx_thread_limit_hint", "cl_qrx_non_uniform_work_group_size",
    "cl_qrx_import_memory",
};

std::string probe() {
    std::string source;
    for (const Texts* names : {&KNOWN, &UNKNOWN}) {
        for (const std::string& name : *names)
            source.append("\n#ifdef ")
                .append(name)
                .append("\n#error ")
                .append(name)
                .append("\n#endif");
    }
    return source + "\n kernel void k(){}";
}

TEST(Extensions, ProbeNamesTen) {
    const Compiled compiled = compile(Request(probe()).with("kernel_name", "k"));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    Texts expected;
    for (const std::string& name : KNOWN)
        expected.push_back(std::to_string(3 * expected.size() + 3) + ":2: error: " + name);
    EXPECT_EQ(compiled.errors, expected);
}

TEST(Extensions, KnownOnesWork) {
    EXPECT_EQ(errors_of("#pragma OPENCL EXTENSION cl_khr_fp64 : enable\n"
                        "#pragma OPENCL EXTENSION cl_khr_fp16 : enable\n"
                        "#pragma OPENCL EXTENSION cl_khr_int64_base_atomics : enable\n"
                        "kernel void k(global double* d, global half* h, global long* l,\n"
                        "              global int* i, write_only image3d_t image) {\n"
                        "d[0] += 1.0; h[0] = h[1] * h[2]; atom_add(l, 1L); atom_inc(i);\n"
                        "write_imagef(image, (int4)(0), (float4)(1.0f)); }"),
              Texts{});
}

} // namespace
