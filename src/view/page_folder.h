#pragma once

// The folder of the pages. They are written into a new folder beside it, which takes its name when all is complete:
//
//   out/coverage                        the pages of an earlier run, whole until the very end
//   out/.veldaview-pages-4711-0         the new ones; removed when the run fails, or by the next run when it was killed
//
// In the folder stands a list of all its files. What is in a folder and not on its list is nobody's to remove: such a
// folder is refused, and stays as it is.

#include <string>

#include "support/output.h"
#include "support/platform.h"

namespace veldacov {

class PageFolder {
public:
    // Creates the new folder with its folders. `target` is where it will be; a fatal error when there is something else.
    explicit PageFolder(const std::string& target);
    // Removes what has not been published.
    ~PageFolder();
    PageFolder(const PageFolder&) = delete;
    PageFolder& operator=(const PageFolder&) = delete;

    // A new file. Its name is relative to the folder, with folders of `pageFolders` at most.
    OutputFile create(const std::string& name);
    // Puts the folder in its place, and removes what was there.
    void publish();

private:
    std::string name_; // as it was given
    std::string target_;
    std::string folder_; // the new one; empty when it is published
    platform::Descriptor lock_;
    OutputFile list_;
};

} // namespace veldacov
