// A folder to sweep among files that must survive it.
#pragma once

#include "support/files.h"
#include "support/program.h"

#include <gmock/gmock.h>

inline const fs::path swept = L"X:\\faults\\swept\\tree";
inline const std::wstring command = L"-do 14 X:\\faults\\s*\\tree";
inline const std::string sweptText = "X:\\faults\\swept\\tree";

/// The folder to sweep, with a link in it to X:\faults\behind; and canaries around it, old ones
/// where no rule reaches and a young one behind the link.
struct Faults
{
    Faults()
    {
        clear();
        for (const wchar_t *canary : { L"canary", L"swept\\canary", L"other\\tree\\canary" })
            makeFile(root / canary, old);
        makeFile(root / L"behind\\canary", young);
        canaries = treeOf(root);
    }
    ~Faults() { clear(); }
    Faults(const Faults &) = delete;
    Faults &operator=(const Faults &) = delete;

    static void clear()
    {
        std::error_code ignored;
        for (const fs::directory_entry &entry : fs::directory_iterator(swept, ignored))
            if (entry.path().filename() != L"link") // what is behind it would go too
                fs::remove_all(entry.path(), ignored);
    }

    void expectLeft(const Tree &left) const
    {
        Tree expected = canaries;
        for (const std::wstring &path : left)
            expected.push_back(L"swept\\tree\\" + path);
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(expected, treeOf(root));
    }

    const fs::path root = L"X:\\faults";
    Tree canaries;
};

/// What a report says under "Errors:".
inline std::string errorsOf(const ProgramRun &run)
{
    const std::size_t from = run.output.find("\nErrors:\n ");
    return from == std::string::npos
               ? ""
               : run.output.substr(from + 10, run.output.find(" \n\n", from) - from - 10);
}
