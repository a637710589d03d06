// The command line of the process that the module was loaded into.
#pragma once

namespace platform {

/// The whole line, program name first, in the narrow code page; quotes stand as they were typed where the system keeps
/// them. Where it only keeps the single arguments, they are joined with one blank each and cut after 32767 characters.
/// The text is valid until the next call and belongs to the platform; it is empty when it can't be had.
const char* GetCommandLineA();

}  // namespace platform
