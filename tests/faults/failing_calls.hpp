// SPDX-License-Identifier: MIT
#pragma once

/// What the library asks others for, and what is refused here. WRITE is a line to
/// standard error.
enum class Call { ALLOCATION, OPENDIR, READDIR, DLOPEN, DLSYM, WRITE };

/// Makes one call of that kind fail, the `number`th from now on, the first being
/// 1; 0: none. The calls are those of the code that is linked into the program,
/// and every operator new. Ends with the object.
class Failing_call {
public:
    Failing_call(Call call, long number);
    ~Failing_call();
    Failing_call(const Failing_call&) = delete;
    Failing_call& operator=(const Failing_call&) = delete;

    /// Whether it came to that call.
    static bool has_failed();
};

/// How many blocks are left of those that operator new gave while an object of
/// the class above existed.
long blocks_left();
