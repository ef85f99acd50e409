/* SPDX-License-Identifier: MIT
 * Copyright (c) the compiler manager authors */
#ifndef VEXAOC_H
#define VEXAOC_H

/**
 * @file
 * The plug-in interface: what an offline shader compiler exports so that the
 * compiler manager can offer it.
 *
 * A plug-in is a shared library for one GPU driver release. Its file is named
 * "lib" + driver name + ".so" and lies in the subdirectory "openglessl" (OpenGL
 * ES Shading Language) or "opencl" (OpenCL C) of the plug-in directory. It
 * exports the five functions declared at the end of this file, all of them,
 * with C linkage.
 *
 * A driver name is "Vexa-", the core family ("K300" or "200"), "_r" and the
 * revision, "p" and the patch, "-" and the version, "rel" and the release:
 * Vexa-K300_r5p0-06rel0. The numbers order the plug-ins, newest first. Any other
 * name is told on standard error; the plug-in is used all the same, behind those
 * of better names.
 *
 * Rules that hold for every function and record:
 *
 * - The records are a binary interface for 64-bit Linux. Field order, widths
 *   and offsets never change; padding may hold anything.
 * - Records arrive zeroed.
 * - The manager tells failure results on standard error but not why they came
 *   about: what the user should read goes into the outputs.
 * - Every text is a NUL-terminated string of 8-bit characters; the manager
 *   compares bytes and knows no encoding. Source text is the caller's bytes.
 * - Every count is the number of elements in the array beside it. An array may
 *   be null when its count is 0; a null array beside another count reads as
 *   empty, and a null text in a capability record reads as the empty text.
 * - What a plug-in fills stays its own. The manager copies what it needs and
 *   hands the record back through the matching release function.
 * - Calls arrive from one thread at a time. No function is called after the
 *   plug-in was closed, and none may throw an exception or end the process.
 */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Makes a plug-in's function visible when the rest of it is hidden. */
#define VEXAOC_API __attribute__((visibility("default")))

/** Interface version that this header describes; the manager accepts major 1. */
#define VEXAOC_API_VERSION_MAJOR 1
/** Rises with additions. */
#define VEXAOC_API_VERSION_MINOR 0
/** Rises with corrections. */
#define VEXAOC_API_VERSION_PATCH 0

/** Results of vexaoc_compile(). Any other number is a failure too. */
enum vexaoc_result {
    /** The request was carried out; errors in the source are no failure of the
     *  request and stand in vexaoc_outputs::strings_a. */
    VEXAOC_SUCCESS = 0,
    /** The core or its revision is none that the plug-in reported. */
    VEXAOC_CORE_NOT_SUPPORTED = 1,
    /** An option was unknown or its value not understood. */
    VEXAOC_INVALID_PARAMETERS = 2,
    /** A binary was asked for and the plug-in makes none. */
    VEXAOC_BINARY_OUTPUT_NOT_SUPPORTED = 3,
    /** Memory ran out. */
    VEXAOC_MEMORY_ERROR = 4
};

/** Version of the plug-in interface that a plug-in was written for (12 bytes). */
typedef struct vexaoc_api_version {
    uint32_t major; /**< the manager refuses every plug-in where this is not 1 */
    uint32_t minor; /**< reported only */
    uint32_t patch; /**< reported only */
} vexaoc_api_version;

/** One revision of one GPU core that a plug-in compiles for (16 bytes). */
typedef struct vexaoc_core {
    /** Short core name such as "k46x", shown to callers as "Vexa-K460". The
     *  manager knows k30x, k32x, k42x, k46x, k52x, k53x, k56x and k58x; any
     *  other name is shown as it stands. A name that occurs in "Vexa-100",
     *  "Vexa-K350" or "Vexa-K370" is never offered; the empty name does. */
    char* core_name;
    /** Revision such as "r2p1_05rel3": "r", one digit, "p", one digit, "_", the
     *  build number, "rel" or "dev", one digit. Shown as it stands; the numbers
     *  order a plug-in's compilers. Another form is read as far as it goes. */
    char* core_revision;
} vexaoc_core;

/**
 * What a plug-in compiles (40 bytes).
 *
 * `entries` is a flat list of texts, each key followed by its value; a key may
 * come several times:
 *
 * | key                     | value                                           |
 * |-------------------------|-------------------------------------------------|
 * | "compiler_type"         | "openglessl" or "opencl"                        |
 * | "openglessl_version"    | a language version: major * 100 + minor * 10    |
 * | "opencl_version"        | likewise                                        |
 * | "openglessl_extensions" | extension names; none at all: they are probed   |
 * | "opencl_extensions"     | likewise                                        |
 * | "flexible_version"      | required: three numbers, the first from 1 to 3  |
 * | "prerotate"             | "true" when pre-rotation is supported           |
 * | "undefine"              | accepted and ignored                            |
 * | "architecture"          | accepted and ignored                            |
 *
 * Any other key is told on standard error and passed over. A language version
 * that is no number makes the manager's initialisation fail. Without a
 * "flexible_version" the plug-in gives no compiler, and neither do the plug-ins
 * that come after it.
 */
typedef struct vexaoc_capabilities {
    uint32_t num_cores;               /**< number of records in `cores` */
    vexaoc_core* cores;               /**< each one compiler per "compiler_type" */
    uint32_t binary_output_supported; /**< exactly 1: vexaoc_compile() can return a binary */
    uint32_t reserved;    /**< padding that no ABI rule makes: part of the layout, holds anything */
    uint32_t num_entries; /**< number of texts: twice the number of pairs */
    char** entries;       /**< keys and values in turn */
} vexaoc_capabilities;

/**
 * One compile request (48 bytes). Filled and owned by the manager; nothing in
 * it outlives the call.
 *
 * `options` is a flat list of keys and values in this order:
 *
 * | key             | value                                                   |
 * |-----------------|---------------------------------------------------------|
 * | "shader_type"   | "fragment", "vertex", "compute", "geometry",            |
 * |                 | "tessellation_control", "tessellation_evaluation" or    |
 * |                 | "kernel"                                                |
 * | "kernel_name"   | a kernel to build; only with "kernel", once a name      |
 * | "prerotate"     | "true" or "false"; only when the plug-in supports it    |
 * | "compiler_type" | "openglessl" or "opencl"                                |
 * | "define"        | a preprocessor definition as the caller wrote it,       |
 * |                 | usually NAME or NAME=VALUE; once a definition           |
 */
typedef struct vexaoc_inputs {
    const char* source;        /**< source text; one text, nothing to include */
    uint32_t num_options;      /**< number of texts in `options`; always even */
    const char** options;      /**< keys and values in turn */
    const char* core_name;     /**< as reported in vexaoc_core::core_name */
    const char* core_revision; /**< as reported in vexaoc_core::core_revision */
    uint32_t binary_output;    /**< 1: a binary is wanted, 0: it is not */
} vexaoc_inputs;

/** A list of texts (16 bytes). */
typedef struct vexaoc_string_list {
    uint32_t num_strings; /**< number of texts in `strings` */
    char** strings;       /**< may be null when there are none */
} vexaoc_string_list;

/**
 * What a compile gave (64 bytes).
 *
 * A plug-in fills what it has and keeps everything valid until
 * vexaoc_release_outputs(). Callers of the manager receive a deep copy of the
 * same layout. A null text in a list is told on standard error ("Compiler
 * Manager Error: NULL inputs to string_copy.") and stays null in the copy.
 *
 * The meanings below are the convention that tools rely on. The manager itself
 * reads one list, `strings_a`, when it probes a plug-in that reports no
 * extensions:
 *
 * - OpenGL ES: a test source requires one extension. Any text in `strings_a`,
 *   be it a warning, means that the extension is not supported.
 * - OpenCL: the test source holds one "#error NAME" for each extension that is
 *   defined. With result 0, each NAME that occurs in a text of `strings_a` is
 *   supported.
 */
typedef struct vexaoc_outputs {
    uint32_t num_string_lists;        /**< number of records in `string_lists` */
    vexaoc_string_list* string_lists; /**< tables, such as statistics; each list a row */
    uint32_t binary_size;             /**< in bytes */
    uint8_t* binary;                  /**< not NUL-terminated */
    uint32_t num_strings_a;           /**< number of texts in `strings_a` */
    char** strings_a;                 /**< errors, one text each; none: the source compiled */
    uint32_t num_strings_b;           /**< number of texts in `strings_b` */
    char** strings_b;                 /**< warnings and notes, one text each */
} vexaoc_outputs;

/**
 * Tells which interface version the plug-in was written for.
 *
 * Called right after the plug-in was opened and once more when its compilers
 * are listed.
 *
 * @param[out] version  receives the version; never null
 */
VEXAOC_API void vexaoc_get_api_version(vexaoc_api_version* version);

/**
 * Tells what the plug-in compiles.
 *
 * Called once when the plug-in is opened, to check "flexible_version", and
 * once when its compilers are listed; both answers should be the same.
 *
 * @param[out] capabilities  receives the record; never null
 * @return 0 on success. Anything else is a failure: the record is not read and
 *         not handed back. When opened, the plug-in is not used; when its
 *         compilers are listed, neither it nor the plug-ins after it are.
 *
 * Ownership: what the record points to stays the plug-in's and must be valid
 * until vexaoc_release_capabilities() gets the same record.
 */
VEXAOC_API int vexaoc_get_capabilities(vexaoc_capabilities* capabilities);

/**
 * Takes back a record that vexaoc_get_capabilities() filled.
 *
 * Not called after a failure, nor when listing ends because the second record
 * lacks a valid "flexible_version": do not count on it to keep a balance.
 *
 * @param capabilities  the same record; never null
 * @return ignored
 */
VEXAOC_API int vexaoc_release_capabilities(vexaoc_capabilities* capabilities);

/**
 * Compiles one shader or kernel.
 *
 * Also called, with small test sources, to find out which extensions the
 * compiler knows when the plug-in reports none.
 *
 * @param      inputs   the request; never null
 * @param[out] outputs  zeroed record to fill; never null
 * @return a vexaoc_result. With any result but 0 the outputs are not read.
 *
 * Ownership: the outputs stay the plug-in's and must be valid until
 * vexaoc_release_outputs() gets the same record.
 */
VEXAOC_API int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs);

/**
 * Takes back a record that vexaoc_compile() was given.
 *
 * Called after every vexaoc_compile(), whatever its result, except when the
 * application's memory runs out while the outputs are copied.
 *
 * @param outputs  the same record, unchanged since; never null
 * @return ignored
 */
VEXAOC_API int vexaoc_release_outputs(vexaoc_outputs* outputs);

/** The type of vexaoc_get_api_version(), for who looks it up by name. */
typedef void (*vexaoc_get_api_version_function)(vexaoc_api_version*);
/** The type of vexaoc_get_capabilities(). */
typedef int (*vexaoc_get_capabilities_function)(vexaoc_capabilities*);
/** The type of vexaoc_release_capabilities(). */
typedef int (*vexaoc_release_capabilities_function)(vexaoc_capabilities*);
/** The type of vexaoc_compile(). */
typedef int (*vexaoc_compile_function)(vexaoc_inputs*, vexaoc_outputs*);
/** The type of vexaoc_release_outputs(). */
typedef int (*vexaoc_release_outputs_function)(vexaoc_outputs*);

#ifdef __cplusplus
}
#endif

#endif
