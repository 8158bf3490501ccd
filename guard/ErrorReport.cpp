#include "guard/ErrorReport.h"

#include <new>

#include "toolkit/Errors.h"
#include "toolkit/Messages.h"

namespace fxhost {

namespace {

int Report(const char* text, int status) {
    PrintMessage(MessageKind::Error, text);
    return status;
}

} // namespace

int RunAndReport(const std::function<int()>& work) {
    try {
        return work();
    } catch (const WrongUse& error) {
        return Report(error.what(), ExitWrongUse);
    } catch (const EffectFailure& error) {
        PrintMessage(MessageKind::Error, error.what(), -1, error.file().empty());
        return ExitEffectFailed;
    } catch (const std::bad_alloc&) {
        return Report("not enough memory", ExitEffectFailed);
    } catch (const std::exception& error) {
        return Report(error.what(), ExitEffectFailed);
    }
}

} // namespace fxhost
