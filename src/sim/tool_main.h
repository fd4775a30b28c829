// The main routine of a simulator tool: parse the command line, print the
// usage on --help or a mistake, then run the server until a stop signal.
#pragma once

#include "sim/tool_options.h"
#include "sim/tool_signals.h"

#include <cstdio>
#include <string>
#include <vector>

namespace vexorin::sim {

template <class Options, class Parse, class Usage, class Run>
int runTool(int argc, char** argv, const char* defaultName, Parse parse, Usage usage, Run run)
{
    const std::string program = argc > 0 ? argv[0] : defaultName;
    const std::vector<std::string> args(argv + (argc > 0 ? 1 : 0), argv + argc);
    Options options;
    std::string error;
    switch (parse(args, options, &error)) {
    case ParseResult::Help:
        std::fputs(usage(program).c_str(), stdout);
        return 0;
    case ParseResult::Error:
        std::fprintf(stderr, "%s: %s\n\n%s", program.c_str(), error.c_str(), usage(program).c_str());
        return 2;
    case ParseResult::Ok:
        break;
    }
    return run(options, installStopSignals());
}

}  // namespace vexorin::sim
