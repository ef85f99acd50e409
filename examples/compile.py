# SPDX-License-Identifier: MIT
"""Compiles a file with the first compiler for its language."""
import sys

import compiler_manager

if len(sys.argv) < 4:
    sys.exit(f"usage: {sys.argv[0]} PLUGINS FILE SHADER_TYPE [KERNEL...]")
plugins, file, shader_type, *kernels = sys.argv[1:]
with open(file, "rb") as stream:
    source = stream.read()

with compiler_manager.Library(plugins) as library:
    api = "opencl" if shader_type == "kernel" else "openglessl"
    compilers = library.compilers(api=api)
    if not compilers:
        sys.exit(f"no compiler for {api}")
    outputs = compilers[0].compile(source, shader_type, kernels=kernels)

for text in outputs.errors + outputs.warnings:
    print(f"{file}: {text}", file=sys.stderr)
sys.exit(0 if outputs.compiled else 1)
