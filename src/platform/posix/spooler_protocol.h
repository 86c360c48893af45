// What a program and its print helper, keldll-spool, say to each other.
//
//     keldll-spool HOW FILE QUEUE TITLE CODE-PAGE LOG-FOLDER PART...
//
// FILE or QUEUE is empty. The files to send are open from descriptor 3 on, in the order of the
// PARTs. On standard error the helper tells "0" when all is sent (HOW is kWaitedFor) or the job is
// in hand (kDetached), else the error's number, a blank and its description.
#pragma once

namespace kel {

inline constexpr const char* kDetached = "detached";
inline constexpr const char* kWaitedFor = "waited-for";
inline constexpr const char* kTextPart = "text";  // to be put into the code page
inline constexpr const char* kBinaryPart = "binary";
inline constexpr int kFirstPart = 3;

}  // namespace kel
