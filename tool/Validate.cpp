#include <cstdio>
#include <fstream>
#include <memory>
#include <unistd.h>

#include "drivers/BundleReference.h"
#include "platform/CGL.h"
#include "tool/Commands.h"
#include "toolkit/Errors.h"
#include "validate/Report.h"
#include "validate/TestTable.h"
#include "validate/Validator.h"

namespace fxhost {

namespace {

struct ValidateCommandOptions {
    validate::ValidateOptions tests;
    bool json = false, list = false;
    std::string junit;
};

void* CurrentContext() {
    return CGLGetCurrentContext();
}

int List() {
    for (const validate::TestRow* row = validate::TestTable(); row->name; ++row)
        std::printf("%2d  %-20s  protects from %s\n", row->level, row->name, row->protects);
    return ExitOk;
}

// A line on a terminal that the next one replaces.
void ShowProgress(std::size_t number, std::size_t count, const std::string& name) {
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "\r\033[K[%zu/%zu] %s", number, count, name.c_str());
}

void EndProgress() {
    if (isatty(STDERR_FILENO))
        std::fprintf(stderr, "\r\033[K");
}

void WriteJunit(const ValidateCommandOptions& options, const std::vector<validate::TestResult>& results) {
    std::ofstream file(options.junit);
    file << validate::ToJunit(options.tests.plugin, results);
    if (!file.flush())
        throw WrongUse("--junit " + options.junit + ": the file cannot be written");
}

int Validate(ValidateCommandOptions& options) {
    if (options.list)
        return List();
    if (options.tests.plugin.empty())
        throw WrongUse("PLUGIN is missing: a bundle NAME.plugin or a module");
    options.tests.system = {CurrentContext, BundleAt};
    const auto results = validate::Validate(options.tests, ShowProgress);
    EndProgress();
    if (!options.junit.empty())
        WriteJunit(options, results);
    std::fputs(options.json ? validate::ToJson(options.tests.plugin, results).c_str()
                            : validate::ToText(results).c_str(),
               stdout);
    return validate::ExitStatusOf(results);
}

} // namespace

Command AddValidate(CLI::App& tool) {
    const auto options = std::make_shared<ValidateCommandOptions>();
    CLI::App* app = tool.add_subcommand("validate", "Test any effect plug-in as a host would use it");
    app->add_option("PLUGIN", options->tests.plugin, "Bundle NAME.plugin, or a module without a bundle");
    app->add_option("--level", options->tests.level, "Run the tests up to this level, 1 to 10")
        ->capture_default_str();
    app->add_option("--seed", options->tests.seed, "Seed of the tests that use random numbers")
        ->capture_default_str();
    app->add_option("--repeat", options->tests.repeat,
                    "Run all that many times, each time with the next seed")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    app->add_option("--steps", options->tests.steps, "Length of the test shuffled-commands")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    app->add_option("--timeout", options->tests.timeout, "Seconds that one test may take; 0: no limit")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    app->add_option("--only", options->tests.only, "Run only this test")->type_name("TEST");
    app->add_flag("--json", options->json, "Print JSON");
    app->add_option("--junit", options->junit, "Write a JUnit report too")->type_name("FILE");
    app->add_flag("--list", options->list, "List the tests, and what each protects a user from");
    app->footer(
        "Exit status: 0 valid; 1 invalid; 2 wrong use; 4 the plug-in crashed or did not come to an end.\n\n"
        "Examples:\n  fxhost validate Blur.plugin --level 10\n"
        "  fxhost validate Blur.plugin --only shuffled-commands --seed 17 --repeat 100");
    return {app, [options] { return Validate(*options); }};
}

} // namespace fxhost
