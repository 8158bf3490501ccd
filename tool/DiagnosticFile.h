#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

#include "packaging/Diagnostic.h"

namespace fxhost {

// A temporary file that parent and child process share. It keeps the diagnostics that the child has written,
// even when the child is killed.
class DiagnosticFile {
public:
    // Throws EffectFailure when no temporary file can be made.
    DiagnosticFile();

    void add(const Diagnostic& diagnostic);
    // Sets the diagnostic that applies if nothing is written after it, or none.
    void setPending(const std::optional<Diagnostic>& diagnostic);
    // All diagnostics, the pending one last.
    std::vector<Diagnostic> readAll();

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> m_File;
};

} // namespace fxhost
