/* SPDX-License-Identifier: MIT
 * Copyright (c) the compiler manager authors */
#ifndef VEXACM_H
#define VEXACM_H

/**
 * @file
 * The compiler manager: one interface to a directory full of offline GPU
 * shader compilers.
 *
 * Rules that hold for every function:
 *
 * - Call vexacm_initialize_libraries() first. Until then, and again after
 *   vexacm_release_libraries(), every function but these two writes one line
 *   to standard error, touches none of its arguments and returns null, 0 or
 *   false. Except where a function's note says otherwise the line is
 *   "Compiler Manager Error: Please call vexacm_initialize_librariesbefore
 *   using other functions." (on one line; the missing blank is part of it).
 * - Compilers are known by ID: numbers from 0 up, as handed out by
 *   vexacm_get_compilers(), which stay the same until
 *   vexacm_release_libraries() or another vexacm_initialize_libraries(). IDs
 *   are not checked: one that was not handed out is undefined behaviour.
 * - Texts are NUL-terminated 8-bit strings, compared byte by byte and never
 *   recoded. A text that the library returns belongs to the library, is not to
 *   be changed or freed, and is valid until vexacm_release_libraries().
 * - Memory that the library hands out (arrays of IDs, compile outputs) belongs
 *   to the caller, who returns it exactly once through the matching release
 *   function while the library is initialised.
 * - Failures are told on standard error, each line written at once. Lines about
 *   a caller's request begin "Compiler Manager Error: ", but for those of three
 *   functions before initialisation, which their notes give. One failure has no
 *   line: a plug-in that answers a compile with a result that is none.
 * - Exceptions are not caught here. vexacm_initialize_libraries() can throw,
 *   and any function that allocates throws std::bad_alloc when memory runs
 *   out. A caller written in C ends when that happens.
 * - One thread at a time: there are no locks. Only
 *   vexacm_release_compiler_outputs() on different records may run on several
 *   threads at once.
 * - Plug-ins run in the caller's process, with all of its rights.
 */

#include "vexaoc.h"

#ifndef __cplusplus
#include <stdbool.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The library's version; the build, the soname and the tool read it here. */
#define VEXACM_VERSION_MAJOR 4
/** Rises with additions. */
#define VEXACM_VERSION_MINOR 0
/** Rises with corrections. */
#define VEXACM_VERSION_PATCH 2

/** Marks the functions that the library exports. */
#define VEXACM_API __attribute__((visibility("default")))

/** A version of the manager. */
typedef struct vexacm_version {
    uint32_t major; /**< VEXACM_VERSION_MAJOR of the library */
    uint32_t minor; /**< VEXACM_VERSION_MINOR of the library */
    uint32_t patch; /**< VEXACM_VERSION_PATCH of the library */
} vexacm_version;

/**
 * Opens every plug-in of a directory and builds the catalogue of compilers.
 *
 * Plug-ins are the files with ".so" in their names in the subdirectories
 * "openglessl" and "opencl". A missing subdirectory, a plug-in that is refused
 * and a strange answer of a plug-in are told on standard error and are no
 * failure; neither is a catalogue without compilers. One kind of answer ends
 * the catalogue where it stands: a plug-in that passed every check when it was
 * opened but then does not report its capabilities, or a valid
 * "flexible_version" among them, is the last one looked at.
 *
 * No test of the file type is made: opening a named pipe, for one, waits for
 * its writer. Nor is one made whether a file is whole: one that was cut short,
 * or is still being written, can end the process with SIGBUS. Put plug-ins in
 * place by renaming them.
 *
 * Calling it while the library is initialised builds a second catalogue, which
 * answers from then on. The first stays in memory for good, its plug-ins open:
 * call vexacm_release_libraries() first unless that is wanted.
 *
 * @param directory  path of the directory; must not be null
 * @return true. It returns only when it succeeded.
 *
 * Exceptions: std::invalid_argument or std::out_of_range ("stoi") when a
 * plug-in reports a language version that is no number or too large a one,
 * std::logic_error for a null directory, std::bad_alloc. After any of them the
 * library is as it was before the call.
 *
 * Lines, with PATH for a plug-in's path, A.B.C for numbers, and DRIVER for its
 * driver name:
 * - "Unable to open library directory " + the subdirectory's path
 * - a file that is no plug-in, which is passed over:
 *   - "Couldn't load library at PATH"; "Library load error: " + the loader's
 *     own words
 *   - "Library at PATH isn't implemented correctly" (a function is missing)
 *   - "Library at PATH has version A.B.C."; "This compiler manager supports
 *     library version v1.x.x only. Please upgrade to a later compiler manager
 *     version."
 *   - "Failed to get capabilities for library PATH."
 *   - "Invalid or malformed flexible version specified for library PATH.";
 *     "Version specified: " + the text
 *   - "Library at PATH uses flexible version A.B.C."; "This compiler manager
 *     supports flexible versions v1.x.x, v2.x.x and v3.x.x only. Please upgrade
 *     to a later compiler manager version."
 * - a file name that stands for no driver release, whether or not the plug-in
 *   is used: "Driver name parse error: \"DRIVER\" has an unknown name format: "
 *   + the reason
 * - an answer that is passed over: "Unknown flexible capability. Key: KEY,
 *   Value: VALUE"
 * - an answer that ends the catalogue:
 *   - "Could not get capabilities of library at PATH."
 *   - "Driver 'DRIVER' doesn't report a flexible version string."
 *   - "Driver 'DRIVER' doesn't report a valid flexible version string: " + the
 *     text
 */
VEXACM_API bool vexacm_initialize_libraries(const char* directory);

/**
 * Gives up the catalogue and closes its plug-ins.
 *
 * Ends the life of every text that the library returned; arrays of IDs and
 * compile outputs stay the caller's, but can be released only once the library
 * is initialised again. Without an initialisation before it, does nothing and
 * prints nothing.
 */
VEXACM_API void vexacm_release_libraries(void);

/**
 * Tells the version of the manager.
 *
 * @param[out] version  receives 4, 0, 2; must not be null
 */
VEXACM_API void vexacm_get_manager_version(vexacm_version* version);

/**
 * Lists the compilers that pass every filter, in ascending order of their IDs:
 * the newest driver first, within a plug-in the highest core and revision.
 *
 * Texts must be equal byte by byte; a null text lets every compiler pass.
 *
 * @param[out] compilers      receives an array of IDs, never null, also when
 *                            it is empty
 * @param[out] count          receives the number of IDs
 * @param      driver_name    such as "Vexa-K300_r5p0-06rel0", or null
 * @param      core_name      such as "Vexa-K460", or null
 * @param      core_revision  such as "r0p1_00rel0", or null
 * @param      api_name       "openglessl" or "opencl", or null
 * @param      binary_output  "true": only compilers that return binaries,
 *                            "false": only the others, null: all of them; any
 *                            other text matches none
 * @param      api_version    lowest acceptable vexacm_get_highest_api_version();
 *                            0 accepts all
 *
 * Ownership: the array is the caller's until vexacm_release_compilers().
 *
 * Errors, after which neither output is written:
 * - "Compiler Manager Error: NULL inputs passed to get_compilers" when
 *   `compilers` or `count` is null;
 * - "Please call vexacm_initialize_libraries before trying to get compilers."
 */
VEXACM_API void vexacm_get_compilers(unsigned int** compilers, unsigned int* count,
                                     const char* driver_name, const char* core_name,
                                     const char* core_revision, const char* api_name,
                                     const char* binary_output, unsigned int api_version);

/**
 * Frees an array of IDs and sets the caller's pointer to null.
 *
 * @param[in,out] compilers  the variable that holds the array, which may be
 *                           null; the variable's address must not be
 * @param         count      not used
 *
 * Error, after which nothing is freed: "Please call
 * vexacm_initialize_libraries before trying to release compilers."
 */
VEXACM_API void vexacm_release_compilers(unsigned int** compilers, unsigned int count);

/**
 * Tells the driver release of a compiler, such as "Vexa-K300_r5p0-06rel0".
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return the text, the library's own; null before initialisation
 */
VEXACM_API const char* vexacm_get_driver_name(unsigned int compiler_id);

/**
 * Tells the display name of a compiler's core, such as "Vexa-K460".
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return the text, the library's own; null before initialisation
 */
VEXACM_API const char* vexacm_get_core_name(unsigned int compiler_id);

/**
 * Tells the revision of a compiler's core, such as "r0p1_00rel0".
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return the text, the library's own; null before initialisation
 */
VEXACM_API const char* vexacm_get_core_revision(unsigned int compiler_id);

/**
 * Tells which language a compiler compiles.
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return "openglessl" or "opencl", the library's own; null before
 *         initialisation
 */
VEXACM_API const char* vexacm_get_api_name(unsigned int compiler_id);

/**
 * Tells the highest language version of a compiler.
 *
 * The OpenGL ES version of Vexa-K300, Vexa-K320 and Vexa-K420 is told as 310
 * when their driver reports 320.
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return major * 100 + minor * 10, so 310 for 3.1; 0 when the plug-in
 *         reports no version, and before initialisation
 */
VEXACM_API unsigned int vexacm_get_highest_api_version(unsigned int compiler_id);

/**
 * Tells which language extensions a compiler knows.
 *
 * When its plug-in does not report them, the first call finds them out by
 * compiling small test sources, 24 for OpenGL ES and one for OpenCL, and keeps
 * the answer; what the plug-in or the compile prints about them appears on
 * standard error.
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return extension names, each followed by one blank, or whatever text the
 *         plug-in reported; may be empty. The library's own; null before
 *         initialisation.
 *
 * Exceptions: std::bad_alloc. An interrupted first call is not repeated: the
 * answer is then the empty text.
 */
VEXACM_API const char* vexacm_get_extensions(unsigned int compiler_id);

/**
 * Tells whether a compiler can return binaries.
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return whether it can; false before initialisation
 */
VEXACM_API bool vexacm_is_binary_output_supported(unsigned int compiler_id);

/**
 * Tells whether a compiler can pre-rotate a shader's output.
 *
 * @param compiler_id  an ID from vexacm_get_compilers()
 * @return whether it can; false before initialisation
 */
VEXACM_API bool vexacm_is_prerotate_supported(unsigned int compiler_id);

/**
 * Compiles one shader or kernel.
 *
 * True means that the compiler carried out the request, not that the source
 * was right: by convention its errors stand in `strings_a` of the outputs, its
 * warnings in `strings_b`, tables of statistics in `string_lists`.
 *
 * A geometry or tessellation shader asks for the compiler's extensions, see
 * vexacm_get_extensions().
 *
 * @param[out] outputs           receives the results; zeroed first, so that it
 *                               is empty after a failure; must not be null
 * @param      source            the source text; must not be null
 * @param      shader_type       "fragment", "vertex", "compute", "geometry",
 *                               "tessellation_control",
 *                               "tessellation_evaluation" or "kernel"; must
 *                               not be null
 * @param      kernel_names      names of the kernels to build, none null; not
 *                               read unless `shader_type` is "kernel"
 * @param      num_kernel_names  their number: at least 1 for OpenCL; 0 for
 *                               fragment, vertex and compute shaders; not
 *                               looked at for the other three
 * @param      binary_output     whether a binary is wanted
 * @param      prerotate         whether the shader's output is to be
 *                               pre-rotated
 * @param      defines           preprocessor definitions, none null, passed on
 *                               as they are; not read unless `num_defines` is
 *                               greater than 0
 * @param      num_defines       their number; negative counts as 0
 * @param      compiler_id       an ID from vexacm_get_compilers()
 * @return true when the compiler carried out the request and `outputs` holds
 *         its results; false after an error
 *
 * Ownership: what `outputs` points to is the caller's until
 * vexacm_release_compiler_outputs(); it outlives vexacm_release_libraries().
 *
 * Errors, the first that applies:
 * - "Please call vexacm_initialize_libraries before trying to compile."
 *   (`outputs` is not touched)
 * - "Compiler Manager Error: NULL inputs passed to compile function."
 * - "Compiler Manager Error: Unknown shader type: " + shader_type + "."
 * - "Compiler Manager Error: Only OpenCL compilers can compile kernels."
 * - "Compiler Manager Error: Compiler must support OpenGL ES 3.1 to use compute shaders."
 * - "Compiler Manager Error: Compiler must support OpenGL ES 3.1 and extension
 *   GL_EXT_geometry_shader to use geometry shaders." (on one line)
 * - "Compiler Manager Error: Compiler must support extension GL_EXT_geometry_shader to use
 *   geometry shaders." (on one line)
 * - the same two with GL_EXT_tessellation_shader and "tessellation shaders."
 * - "Compiler Manager Error: Cannot specify a shader name when compiling using an OpenGL ES
 *   compiler." (on one line)
 * - "Compiler Manager Error: Shader type " + shader_type + " can only be compiled using an
 *   OpenGL ES compiler." (on one line)
 * - "Compiler Manager Error: Must specify at least one kernel name when compiling using an
 *   OpenCL compiler." (on one line)
 * - "Compiler Manager Error: Compiler does not support prerotate."
 * - "Compiler Manager Error: Core not supported."
 * - "Compiler Manager Error: Invalid Parameters."
 * - "Compiler Manager Error: Binary output not supported."
 * - "Compiler Manager Error: Compiler memory error."
 * - no line at all when the plug-in fails with a result outside 0 to 4.
 *
 * A null text in the plug-in's results is told once each as
 * "Compiler Manager Error: NULL inputs to string_copy." and stays null in the
 * copy; the compile succeeds.
 *
 * Exceptions: std::bad_alloc. `outputs` can then still be released.
 */
VEXACM_API bool vexacm_compile(vexaoc_outputs* outputs, const char* source, const char* shader_type,
                               const char* const* kernel_names, int num_kernel_names,
                               bool binary_output, bool prerotate, const char* const* defines,
                               int num_defines, unsigned int compiler_id);

/**
 * Frees what vexacm_compile() put into a record.
 *
 * The record itself is not changed, so that it holds dangling pointers
 * afterwards: release each record once.
 *
 * @param outputs  a record that vexacm_compile() filled or zeroed; must not be
 *                 null
 */
VEXACM_API void vexacm_release_compiler_outputs(vexaoc_outputs* outputs);

#ifdef __cplusplus
}
#endif

#endif
