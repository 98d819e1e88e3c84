// The three files of one handle while a stage uses them: opened, read and written in one piece each, timed and
// reported.
#pragma once
#include "solvers_ds/kernel/default/pardiso/out_of_core/files.hpp"

namespace nxl::pardiso {

class FactorFiles {
    const OocContext& ooc_;
    const char* kernel_;
    const bool messages_;
    std::FILE* files_[3] = {};
    OocStatus status_ = OocStatus::done;

    std::FILE*& file(OocFileKind kind) { return files_[static_cast<int>(kind) - 1]; }
    bool settle(const char* text);

  public:
    /// Reports bear the name of the kernel that the files serve.
    FactorFiles(const OocContext& ooc, const char* kernel, bool messages)
        : ooc_(ooc),
          kernel_(kernel),
          messages_(messages) {}
    ~FactorFiles();
    FactorFiles(const FactorFiles&) = delete;
    FactorFiles& operator=(const FactorFiles&) = delete;

    void serve(const char* kernel) { kernel_ = kernel; }

    /// Each of these says whether it succeeded; `text` names its place in the work for reports.
    bool open(OocFileKind kind, char mode, const char* text);
    bool write(OocFileKind kind, const OocItems& items, const void* data, const char* text);
    bool read(OocFileKind kind, const OocItems& items, void* data, OocFigure seconds, OocFigure megabytes,
              const char* text);
    /// Tells the system what will be read next.
    void expect(OocFileKind kind, const OocItems& items);
    bool close();

    OocStatus status() const { return status_; }
};

/// Makes the three files of a handle and holds them: another handle of this process that would use the same ones is
/// refused. The row lists go into the first.
OocStatus create_factor_files(const OocContext& ooc, const i32* lindx, i64 count, bool messages);

/// Removes them, unless they are to be kept, and holds them no longer. Nothing to be done where there are none.
void remove_factor_files(const OocContext& ooc, bool messages);

} // namespace nxl::pardiso
