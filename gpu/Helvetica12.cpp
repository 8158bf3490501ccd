#include "gpu/BitmapFont.h"
const BitmapFont g_Helvetica12 = {"-adobe-helvetica-medium-r-normal--12-120-75-75-p-67-iso8859-1", 0, 32,
                                  nullptr};
