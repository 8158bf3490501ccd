#include "tool/Tool.h"

int main(int argc, char** argv) {
    return fxhost::RunTool(argc, argv);
}
