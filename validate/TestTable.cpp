#include "validate/TestTable.h"

namespace validate {

const TestRow* TestTable() {
    static const TestRow s_Rows[] = {
        {"loads", 1, "an effect that is missing from the menu", Loads},
        {"renders", 1, "an effect that fails with its first frame", RendersOneFrame},
        {"unloads", 1, "a crash when the program quits", Unloads},
        {"depths", 2, "black, clipped or torn frames in projects of another bit depth", Depths},
        {"sizes", 2, "a crash with very small, odd or very wide layers", Sizes},
        {"row-padding", 3, "stripes at the right border that depend on other programs' memory", RowPadding},
        {"downsampling", 3, "a preview that fails at half or quarter resolution", Downsampling},
        {"pixel-aspect", 3, "an error with footage of non-square pixels", PixelAspect},
        {"same-frame-twice", 4, "cached and exported frames that differ from the preview", SameFrameTwice},
        {"save-and-reopen", 4, "a project that looks different after it is reopened", SaveAndReopen},
        {"duplicate", 4, "a copied layer that looks different from its original", DuplicateInstance},
        {"undo", 4, "a deleted effect that looks different after undo", Undo},
        {"other-thread", 4, "an export, which renders on another thread, that differs from the preview",
         OtherThread},
        {"frame-order", 4, "frames that depend on where the user scrubbed before", FrameOrder},
        {"several-instances", 5, "a layer that changes when the effect on another layer does",
         SeveralInstances},
        {"parameter-names", 5, "controls with the same name, or with none", ParameterNames},
        {"parameter-defaults", 5, "controls that start outside their range", ParameterDefaults},
        {"parameter-extremes", 6, "a crash or an error at the end of a slider", ParameterExtremes},
        {"animated-parameters", 6, "keyframes that have no effect or come late", AnimatedParameters},
        {"pipl-flags", 6, "an effect that the program refuses to load", PiplFlags},
        {"life-cycles", 7, "memory that grows until the program must be restarted", LifeCycles},
        {"out-of-memory", 7, "a crash when memory is short", OutOfMemory},
        {"interruptions", 8, "a leak or a crash each time the user interrupts a render", Interruptions},
        {"host-quirks", 8, "errors that show in real programs only", HostQuirks},
        {"parallel-rendering", 9, "torn frames with multi-frame rendering", ParallelRendering},
        {"shuffled-commands", 10, "rare errors after long work in an unusual order", ShuffledCommands},
        {nullptr, 0, nullptr, nullptr},
    };
    return s_Rows;
}

} // namespace validate
