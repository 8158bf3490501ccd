#include "guard/Outcome.h"

#include <cstdio>
#include <new>

#include "toolkit/Errors.h"

namespace fxhost {

namespace {

int Fail(const char* text, int status) {
    std::fprintf(stderr, "fxhost: %s\n", text);
    return status;
}

} // namespace

int StatusOf(const std::function<int()>& work) {
    try {
        return work();
    } catch (const WrongUse& error) {
        return Fail(error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        std::fprintf(stderr, "%s%s\n", error.file().empty() ? "fxhost: " : "", error.what());
        return ExitEffectFailed;
    } catch (const std::bad_alloc&) {
        return Fail("not enough memory", ExitEffectFailed);
    } catch (const std::exception& error) {
        return Fail(error.what(), ExitEffectFailed);
    }
}

} // namespace fxhost
