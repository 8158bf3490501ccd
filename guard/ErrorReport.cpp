#include "guard/ErrorReport.h"

#include <cstdio>
#include <new>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

int Report(const char* text, int status) {
    std::fprintf(stderr, "fxhost: %s\n", text);
    return status;
}

} // namespace

int RunAndReport(const std::function<int()>& work) {
    try {
        return work();
    } catch (const WrongUse& error) {
        return Report(error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        std::fprintf(stderr, "%s%s\n", error.file().empty() ? "fxhost: " : "", error.what());
        return ExitEffectFailed;
    } catch (const std::bad_alloc&) {
        return Report("not enough memory", ExitEffectFailed);
    } catch (const std::exception& error) {
        return Report(error.what(), ExitEffectFailed);
    }
}

} // namespace fxhost
