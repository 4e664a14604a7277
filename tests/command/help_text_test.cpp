// SPDX-License-Identifier: Apache-2.0
#include "command/help_text.h"

#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

const Texts kHelp = {
    L"Special commands:\n",
    L"    batch(filepath)                 - Runs commands from a file.\n",
    L"    batchlog(file,Speed,mode,value) - Runs commands from a binary file.\n",
    L"        file: Name of the binary file\n",
    L"        Speed: Speed multiplier of the replay (default value 1)\n",
    L"        mode:[time]: play the last [value] minutes\n",
    L"             [command]: play the last [value] commands\n",
    L"    citems                          - Clears all buffered lists.\n",
    L"    citem(name)                     - Clears the list by name.\n",
    L"    litem(name)                     - Lists the items by name.\n",
    L"    item(type,name,data...)         - Defines list item for list parameter.\n",
    L"                                      possible types: SStringArray, SRouteHandleList,\n",
    L"                                         SRoadSegmentList, SDestinationElementList,\n",
    L"                                         SRouteModeList\n",
    L"    quit                            - Exits from ventrik.\n",
    L"    server(name)                    - Switch between more servers.\n",
    L"                                      possible names: navigation, synctool\n",
    L"    wait(sec)                       - Waits for seconds.\n\n",
    L"Special keys (use these when command prompt is not shown, and init was called):\n",
    L"             (also work as standalone commands)\n",
    L"    8,6,2,4,5                 - Moves map by requestMapControls(), 5 toggles autoscroll.\n",
    L"    +,-                       - Zoom in/out map by requestSetZoomScale().\n\n",
};

using HelpText = CommandTest;

TEST_F(HelpText, IsPrintedLineByLine) {
  PrintHelp();
  EXPECT_EQ(console_.TakeTexts(), kHelp);
}

TEST_F(HelpText, CommandTakesAnyParameters) {
  Run(L"help");
  EXPECT_EQ(console_.TakeTexts(), kHelp);
  Run(L"help(\"x\")");
  EXPECT_EQ(console_.TakeTexts(), kHelp);
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

}  // namespace
}  // namespace ventrik::tests
