// SPDX-License-Identifier: MIT
// A shared library without plugin metadata.
extern "C" __attribute__((visibility("default"))) int lpsdkPlainLibraryAnswer()
{
    return 42;
}
