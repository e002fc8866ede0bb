// sdvtool: seals, unseals and inspects .sdv files.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "CLS_SdvTool.h"

namespace {

constexpr const char* kUsage =
    "usage: sdvtool [options] seal IN OUT      seal a video file into OUT\n"
    "       sdvtool [options] unseal IN OUT    write the video inside IN to OUT\n"
    "       sdvtool info FILE                  show the header (no password needed)\n"
    "       sdvtool [options] verify FILE      check every chunk of FILE\n"
    "       sdvtool [options] passwd FILE      change the password of FILE\n"
    "       sdvtool [options] export IN OUT FROM TO\n"
    "                                          cut seconds FROM to TO of IN, counted from\n"
    "                                          its first picture, into OUT without\n"
    "                                          re-encoding: sealed when OUT ends in .sdv,\n"
    "                                          else MP4\n"
    "options:\n"
    "  --password-file F      read the password from the first line of F\n"
    "  --new-password-file F  passwd, export: read the new password from F\n"
    "  --plain                seal: write a plain .sdv (no password, no encryption)\n"
    "Passwords are read from the terminal with echo off, or from standard input\n"
    "(one per line) when it is not a terminal.\n"
    "exit status: 0 ok, 1 usage, 2 wrong password, 3 damaged file, 4 input/output error\n";

int Usage(const char* _pProblem)
{
    if (_pProblem) std::fprintf(stderr, "sdvtool: %s\n", _pProblem);
    std::fputs(kUsage, stderr);
    return CLS_SdvTool::EXIT_USAGE;
}

}  // namespace

int main(int argc, char** argv)
{
    CLS_SdvTool::ST_Options stOptions;
    std::vector<std::string> vecArgs;
    for (int i = 1; i < argc; ++i) {
        const std::string strArg = argv[i];
        if (strArg == "-h" || strArg == "--help") {
            std::fputs(kUsage, stdout);
            return CLS_SdvTool::EXIT_OK;
        }
        if (strArg == "--password-file" || strArg == "--new-password-file") {
            if (i + 1 >= argc) return Usage("an option lacks its file");
            (strArg == "--password-file" ? stOptions.m_strPasswordFile
                                         : stOptions.m_strNewPasswordFile) = argv[++i];
        } else if (strArg == "--plain") {
            stOptions.m_blPlain = true;
        } else if (strArg.rfind("--", 0) == 0) {
            // Deliberately no way to give a password itself here.
            return Usage(("unknown option " + strArg).c_str());
        } else {
            vecArgs.push_back(strArg);
        }
    }
    if (vecArgs.empty()) return Usage("no command");
    const std::string& strCommand = vecArgs[0];
    const std::size_t sizeWanted = strCommand == "export"                             ? 5
                                   : (strCommand == "seal" || strCommand == "unseal") ? 3
                                                                                      : 2;
    if (strCommand != "seal" && strCommand != "unseal" && strCommand != "info" &&
        strCommand != "verify" && strCommand != "passwd" && strCommand != "export")
        return Usage(("unknown command " + strCommand).c_str());
    if (vecArgs.size() != sizeWanted) return Usage("wrong number of arguments");

    CLS_SdvTool stTool(stOptions);
    if (strCommand == "seal") return stTool.Seal(vecArgs[1], vecArgs[2]);
    if (strCommand == "unseal") return stTool.Unseal(vecArgs[1], vecArgs[2]);
    if (strCommand == "info") return stTool.Info(vecArgs[1]);
    if (strCommand == "verify") return stTool.Verify(vecArgs[1]);
    if (strCommand == "export") {
        char* pEnd = nullptr;
        const double dFrom = std::strtod(vecArgs[3].c_str(), &pEnd);
        if (*pEnd != '\0') return Usage("FROM is not a number of seconds");
        const double dTo = std::strtod(vecArgs[4].c_str(), &pEnd);
        if (*pEnd != '\0') return Usage("TO is not a number of seconds");
        return stTool.Export(vecArgs[1], vecArgs[2], dFrom, dTo);
    }
    return stTool.Passwd(vecArgs[1]);
}
