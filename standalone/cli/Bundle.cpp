#include "standalone/bundle/Bundle.h"

#include <memory>

#include "standalone/Errors.h"
#include "standalone/cli/Commands.h"

namespace fxhost {

Command AddBundle(CLI::App& tool) {
    const auto parts = std::make_shared<BundleParts>();
    CLI::App* app =
        tool.add_subcommand("bundle", "Make a plug-in bundle from an effect folder, without a compiler");
    app->add_option("FOLDER", parts->effect, "Folder that holds fx.js")->required();
    app->add_option("-o,--output", parts->bundle, "Bundle to make")->required()->type_name("DIR/NAME.plugin");
    app->add_option("--module", parts->module,
                    "Built plug-in module; the one that came with this tool if not given")
        ->type_name("FILE");
    app->add_flag("--force", parts->replace, "Replace a bundle that is there");
    app->footer("Example:\n  fxhost bundle effects/blur -o Blur.plugin\n"
                "  fxhost render --plugin Blur.plugin -i in.png -o out.png");
    return {app, [parts] {
                WriteBundle(*parts);
                return static_cast<int>(ExitOk);
            }};
}

} // namespace fxhost
