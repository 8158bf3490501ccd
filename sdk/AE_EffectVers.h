#pragma once

#define PF_PLUG_IN_VERSION 13
#define PF_PLUG_IN_SUBVERS 28
