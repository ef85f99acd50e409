/* SPDX-License-Identifier: MIT
 *
 * Sizes and offsets that plug-ins built years ago rely on. A wrong one is an
 * array of negative size named after the field. */
#include <stddef.h>

#define CHECK_SIZE(record, size) typedef char size_of_##record[sizeof(record) == (size) ? 1 : -1]
#define CHECK_FIELD(record, field, offset, type)                                                   \
    typedef char offset_of_##record##_##field[offsetof(record, field) == (offset) ? 1 : -1];       \
    typedef char size_of_##record##_##field[sizeof(((record*)0)->field) == sizeof(type) ? 1 : -1]

CHECK_SIZE(vexaoc_api_version, 12);
CHECK_FIELD(vexaoc_api_version, major, 0, uint32_t);
CHECK_FIELD(vexaoc_api_version, minor, 4, uint32_t);
CHECK_FIELD(vexaoc_api_version, patch, 8, uint32_t);

CHECK_SIZE(vexaoc_core, 16);
CHECK_FIELD(vexaoc_core, core_name, 0, char*);
CHECK_FIELD(vexaoc_core, core_revision, 8, char*);

CHECK_SIZE(vexaoc_capabilities, 40);
CHECK_FIELD(vexaoc_capabilities, num_cores, 0, uint32_t);
CHECK_FIELD(vexaoc_capabilities, cores, 8, vexaoc_core*);
CHECK_FIELD(vexaoc_capabilities, binary_output_supported, 16, uint32_t);
CHECK_FIELD(vexaoc_capabilities, reserved, 20, uint32_t);
CHECK_FIELD(vexaoc_capabilities, num_entries, 24, uint32_t);
CHECK_FIELD(vexaoc_capabilities, entries, 32, char**);

CHECK_SIZE(vexaoc_inputs, 48);
CHECK_FIELD(vexaoc_inputs, source, 0, const char*);
CHECK_FIELD(vexaoc_inputs, num_options, 8, uint32_t);
CHECK_FIELD(vexaoc_inputs, options, 16, const char**);
CHECK_FIELD(vexaoc_inputs, core_name, 24, const char*);
CHECK_FIELD(vexaoc_inputs, core_revision, 32, const char*);
CHECK_FIELD(vexaoc_inputs, binary_output, 40, uint32_t);

CHECK_SIZE(vexaoc_string_list, 16);
CHECK_FIELD(vexaoc_string_list, num_strings, 0, uint32_t);
CHECK_FIELD(vexaoc_string_list, strings, 8, char**);

CHECK_SIZE(vexaoc_outputs, 64);
CHECK_FIELD(vexaoc_outputs, num_string_lists, 0, uint32_t);
CHECK_FIELD(vexaoc_outputs, string_lists, 8, vexaoc_string_list*);
CHECK_FIELD(vexaoc_outputs, binary_size, 16, uint32_t);
CHECK_FIELD(vexaoc_outputs, binary, 24, uint8_t*);
CHECK_FIELD(vexaoc_outputs, num_strings_a, 32, uint32_t);
CHECK_FIELD(vexaoc_outputs, strings_a, 40, char**);
CHECK_FIELD(vexaoc_outputs, num_strings_b, 48, uint32_t);
CHECK_FIELD(vexaoc_outputs, strings_b, 56, char**);
