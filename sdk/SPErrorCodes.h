#pragma once

enum {
    kSPNoError = 0,
    kSPSuiteNotFoundError = 0x53214664, // "S!Fd"
    kSPBadParameterError = 0x5061726D,  // "Parm"
};
