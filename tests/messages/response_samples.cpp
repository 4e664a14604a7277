// SPDX-License-Identifier: Apache-2.0
#include "tests/messages/message_samples.h"

namespace ventrik {
namespace {

std::vector<MessageSample> Search() {
  return {
      {Hex("2D010000 02000000 04000000 'in' 0000 'avai' 00000000"),
       "inputEIS='in' availableTypesEIS='avai'"},
      {Hex("2D010000 00000000 03000000 'eis' 00"), "inputEIS='' availableTypesEIS='eis'"},
      {Hex("2F010000 02000000 01000000 03000000 01000000 0C000000 01000000 'in' 0000 'ABC' 00 'A' "
           "000000"),
       "inputEIS='in' validState=1 nextAvailableCharacters='ABC' offeredCharacters='A' "
       "count=12 isFullMatch=1"},
      {Hex("2F010000 02000000 01000000 00000000 01000000 0C000000 02000000 'in' 0000 'A' 000000"),
       "inputEIS='in' validState=1 nextAvailableCharacters='' offeredCharacters='A' "
       "count=12 isFullMatch=2"},
      {Hex("31010000 02000000 01000000 02000000 01000000 03000000 'in' 0000 01000000 10000000 "
           "'name' 00000000 'out' 00"),
       "inputEIS='in' validState=1 sortOptions=[1, 16] fieldOptions=['name'] "
       "outputEIS='out'"},
      {Hex("33010000 02000000 01000000 01000000 32000000 4D000000 01000000 02000000 03000000 "
           "01000000 'in' 0000 'opt' 00 'row1' 00000000 'row2' 00000000 'out' 00"),
       "inputEIS='in' validState=1 startIndex=1 resultCount=50 word5=77 "
       "fieldOptions=['opt'] itemList=['row1', 'row2'] outputEIS='out' completeState=1"},
      {Hex("33010000 00000000 02000000 01000000 00000000 00000000 00000000 00000000 00000000 "
           "02000000"),
       "inputEIS='' validState=2 startIndex=1 resultCount=0 word5=0 fieldOptions=[] "
       "itemList=[] outputEIS='' completeState=2"},
      {Hex("35010000 02000000 01000000 02000000 03000000 'in' 0000 'GEO' 00 'NAME' 00000000 'out' "
           "00"),
       "inputEIS='in' validState=1 requestedFields=['GEO', 'NAME'] outputEIS='out'"},
      {Hex("37010000 02000000 01000000 03000000 01000000 04000000 02000000 'in' 0000 'out' 00 "
           "'type' 00000000 'un' 0000"),
       "inputEIS='in' validState=1 outputEIS='out' ambiguity=1 ambiguityType='type' "
       "unresolvedElements='un'"},
      {Hex("39010000 02000000 01000000 'in' 0000"), "inputEIS='in' validState=1"},
      {Hex("3B010000 02000000 02000000 'in' 0000"), "inputEIS='in' validState=2"},
  };
}

std::vector<MessageSample> MapAndTrip() {
  return {
      {Hex("75000000 02000000 01000000 06000000 02000000 'in' 0000 'a' 000000 'b' 000000"),
       "inputEIS='in' validState=1 worldElements=6 itemList=['a', 'b']"},
      {Hex("77000000 03000000 01000000 04000000 'map' 00 'file' 00000000"),
       "map='map' validState=1 filename='file'"},
      {Hex("77000000 00000000 02000000 00000000 00000000 00000000"),
       "map='' validState=2 filename=''"},
      {Hex("BD020000 03000000 0A000000 ECFFFFFF 00000000 0000F83F 00000000 000002C0 03000000 "
           "28000000 02000000 09000000 'map' 00 'p0' 0000 'p1' 0000"),
       "mapEIS='map' xCoordinate=10 yCoordinate=-20 xWorldCoordinate=1.5 "
       "yWorldCoordinate=-2.25 worldElements=3 radius=40 pickInfo=['p0', 'p1'] word11=9"},
      {Hex("BF020000 04000000 01000000 'ctrl' 00000000"), "mapControls='ctrl' validState=1"},
      {Hex("93010000 08000000 01000000 02000000 'road' 00000000"),
       "word1=8 blockedItems=['road'] validState=2"},
      {Hex("95010000 04000000 02000000 01000000 01000000 'home' 00000000 02000000 'x' 000000 'yy' "
           "0000 'work' 00000000 00000000 01000000 00020000 1F000000"),
       "destinations=['home'('x', 'yy'), 'work'()] routeModes=[1, 512] validState=1 "
       "handles=[31]"},
      {Hex("9F010000 04000000 01000000 01000000 02000000 'path' 00000000 02000000 1F000000 "
           "20000000"),
       "pathEIS='path' routeModes=[2] validState=1 handles=[31, 32]"},
      {Hex("97010000 02000000 1F000000 FFFFFFFF"), "handles=[31, -1]"},
  };
}

std::vector<MessageSample> StatusAndGuidance() {
  return {
      {Hex("01000000 FDFFFFFF"), "result=-3"},
      {Hex("65000000"), ""},
      {Hex("79000000"), ""},
      {Hex("11000000 02000000"), "state=2"},
      {Hex("12000000 04000000"), "measurementSystem=4"},
      {Hex("13000000 0102"), "body='\x01\x02'"},
      {Hex("CB000000 03000000 'pos' 00"), "posInfo='pos'"},
      {Hex("91010000"), "body=''"},
      {Hex("9A010000 01000000 FFFFFFFF 03000000"), "routeDesc1=1 routeDesc2=-1 routeDesc3=3"},
      {Hex("9B010000 3C000000 B0040000 01000000 05000000 06000000"),
       "time=60 distance=1200 nextManInfo1=1 nextManInfo2=5 nextManInfo3=6"},
      {Hex("9C010000 07000000 08000000"), "nextDestInfo1=7 nextDestInfo2=8"},
      {Hex("9D010000 1F000000 03000000 63000000"), "routeHandle=31 calcState=3 calcPercent=99"},
      {Hex("A2010000 01000000"), "validState=1"},
      {Hex("A3010000 01000000"), "routeRecordingActive=1"},
      {Hex("A4010000 03000000 'det' 00"), "detailsEIS='det'"},
      {Hex("A5010000 04000000 01000000 02000000 'dest' 00000000"), "dest='dest' element=1 total=2"},
      {Hex("AF010000 00000000"), "detailsEIS=''"},
      {Hex("F4010000 03000000"), "audioSource=3"},
      {Hex("F7010000 01000000"), "isEnabled=1"},
      {Hex("FA010000 02000000"), "audioSource=2"},
      {Hex("FC010000 0B000000 01000000"), "prompt=11 validState=1"},
      {Hex("59020000 03000000 06000000"), "language=3 number=6"},
      {Hex("5A020000 01000000"), "state=1"},
      {Hex("5C020000 01000000 82000000"), "mode=1 speed=130"},
      {Hex("5E020000 01000000"), "mode=1"},
      {Hex("63020000 03000000 'vol' 00"), "text='vol'"},
      {Hex("6D020000"), ""},
      {Hex("77020000 02000000 03000000 'in' 0000"), "inputEIS='in' state=3"},
  };
}

std::vector<MessageSample> TrafficAndUpdate() {
  return {
      {Hex("21030000 01000000"), "mode=1"},
      {Hex("23030000 04000000 58020000"), "mode=4 delayThreshold=600"},
      {Hex("24030000 02000000 01000000 02000000 58000000 1F000000 20000000 'new1' 00000000 'old1' "
           "00000000 'old' 00"),
       "routeHandles=[31, 32] tmcNewEvents=['new1'] tmcDeletedEvents=['old1', 'old'] "
       "word4=88"},
      {Hex("25030000 09000000 01000000 01000000 1F000000 'new' 00 'old' 00"),
       "word1=9 tmcNewEvents=['new'] tmcDeletedEvents=['old'] routeHandle=31"},
      {Hex("26030000 02000000 1F000000 20000000"), "routeHandles=[31, 32]"},
      {Hex("27030000 'x'"), "body='x'"},
      {Hex("2A030000 05000000"), "tmcInfoChanged=5"},
      {Hex("2C030000 02000000 'e1' 0000 'e2' 0000"), "tmcEvents=['e1', 'e2']"},
      {Hex("2D030000 00000000"), "tmcEvents=[]"},
      {Hex("2E030000 01000000 02000000 'fm' 0000"), "tmcTuningMode=1 tuningParameters='fm'"},
      {Hex("86030000 03000000 'sw1' 00"), "swVersion='sw1'"},
      {Hex("87030000 04000000 'db12' 00000000"), "dbVersion='db12'"},
      {Hex("E9030000 04000000 28000000 01000000 01000000 02000000 'path' 00000000 'del' 00 'c1' "
           "0000 'c2' 0000"),
       "path='path' result=40 update=1 delete=['del'] copy=['c1', 'c2']"},
      {Hex("E9030000 00000000 00000000 02000000 00000000 00000000 00000000"),
       "path='' result=0 update=2 delete=[] copy=[]"},
      {Hex("EA030000 04000000 4B000000 'path' 00000000"), "updatePath='path' percent=75"},
      {Hex("EC030000 04000000 01000000 'path' 00000000"), "path='path' result=1"},
      {Hex("36230000"), ""},
      {Hex("7C000000 03000000 'eis' 00"), "eis='eis'"},
      {Hex("7E000000 03000000 'eis' 00"), "eis='eis'"},
  };
}

}  // namespace

std::vector<MessageSample> ResponseSamples() {
  std::vector<MessageSample> samples;
  for (auto* part : {Search, MapAndTrip, StatusAndGuidance, TrafficAndUpdate}) {
    for (MessageSample& sample : part()) samples.push_back(std::move(sample));
  }
  return samples;
}

}  // namespace ventrik
