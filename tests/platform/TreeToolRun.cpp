#include "platform/TreeToolRun.h"

#include <unistd.h>

namespace vesko {

std::vector<std::string> treeToolWords(Rights rights, const std::vector<std::string>& task) {
    std::vector<std::string> words;
    if (rights == Rights::ordinaryUser && ::geteuid() == 0)
        words = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    words.push_back(VESKO_TREE_TOOL);
    words.insert(words.end(), task.begin(), task.end());
    return words;
}

ShellResult runTreeTool(Rights rights, const std::vector<std::string>& task) {
    return runProgram(treeToolWords(rights, task));
}

ShellResult runInOwnMounts(Rights rights, const std::string& script,
                           const std::vector<std::string>& arguments) {
    std::string function = "tree_tool() {";
    for (const std::string& word : treeToolWords(rights, {})) function += " '" + word + "'";
    function += " \"$@\"; }\nset -e\n";
    std::vector<std::string> words = {"unshare", "-m", "sh", "-c", function + script, "sh"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(words);
}

std::string whyNoOwnMounts() {
    if (::geteuid() != 0) return "mounting needs root";
    const ShellResult tried = runProgram({"unshare", "-m", "mount", "-t", "tmpfs", "none", "/mnt"});
    return tried.status == 0 ? std::string() : "no mounts here: " + tried.errors;
}

std::string whyNoInjection() {
    if (!hasProgram("strace")) return "strace is not installed";
    const ShellResult tried =
        runProgram({"strace", "-o", "/dev/stdout", "-e", "inject=getppid:error=EIO", "true"});
    return tried.status == 0 ? std::string() : "strace can't trace here: " + tried.errors;
}

} // namespace vesko
