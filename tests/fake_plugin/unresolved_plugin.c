/* SPDX-License-Identifier: MIT
 *
 * A plug-in that calls a function which nobody has. */
int fake_unresolved_function(void);

void vexaoc_get_api_version(void* version);
int vexaoc_get_capabilities(void* capabilities);
int vexaoc_release_capabilities(void* capabilities);
int vexaoc_compile(void* inputs, void* outputs);
int vexaoc_release_outputs(void* outputs);

void vexaoc_get_api_version(void* version) {
    *(unsigned int*)version = 1;
}

int vexaoc_get_capabilities(void* capabilities) {
    (void)capabilities;
    return 0;
}

int vexaoc_release_capabilities(void* capabilities) {
    (void)capabilities;
    return 0;
}

int vexaoc_compile(void* inputs, void* outputs) {
    (void)inputs;
    (void)outputs;
    return fake_unresolved_function();
}

int vexaoc_release_outputs(void* outputs) {
    (void)outputs;
    return 0;
}
