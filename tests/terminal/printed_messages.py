# SPDX-License-Identifier: Apache-2.0
"""Every message that is printed: its name, its fields for a scenario, and its text."""

RED, GREY = "\033[1;31m", "\033[0;37m"


def lines(name, *rest):
    return "".join(f"{name}> {line}\n" for line in rest)


def row(name, text, /, **fields):
    """A message of the engine and the text that it gives."""
    return name, fields, text


def rows(name, /, *rest, **fields):
    """The same where each line begins with the message's name."""
    return row(name, lines(name, *rest), **fields)


def not_implemented(name):
    return row(name, f"{name}> {RED}Not implemented.\n{GREY}", body="0102")


SEARCHES = [
    rows(
        "RESP_GET_AVAILABLE_INFO",
        'inputEIS: "<CTY>Köln<*>"',
        'availableTypesEIS: "<STR><*>"',
        inputEIS="<CTY>Köln<*>",
        availableTypesEIS="<STR><*>",
    ),
    rows(
        "RESP_GET_SPELL",
        'inputEIS: "Kö"',
        "validState: valid",
        'nextAvailableCharacters: "ln"',
        'offeredCharacters: "ln am Rhein"',
        "count: 12",
        "isFullMatch: off",
        inputEIS="Kö",
        validState=1,
        nextAvailableCharacters="ln",
        offeredCharacters="ln am Rhein",
        count=12,
        isFullMatch=2,
    ),
    rows(
        "RESP_GET_LIST_INFO",
        'inputEIS: "i"',
        "validState: invalid",
        "sortOptions: ascending|hierarchicalSort|3",
        'fieldOptions: "GEO" "POP" ',
        'outputEIS: "o"',
        inputEIS="i",
        validState=2,
        sortOptions=[1, 16, 3],
        fieldOptions=["GEO", "POP"],
        outputEIS="o",
    ),
    row(
        "RESP_GET_LIST",
        lines(
            "RESP_GET_LIST",
            'inputEIS: "i"',
            "validState: valid",
            "startIndex: 51",
            "resultCount: 80",
            'fieldOptions: "GEO" ',
        )
        + "RESP_GET_LIST> itemList:\n   51. (Köln)\n   52. ()\n\n"
        + lines("RESP_GET_LIST", 'outputEIS: "o"', "completeState: on"),
        inputEIS="i",
        validState=1,
        startIndex=51,
        resultCount=80,
        fieldOptions=["GEO"],
        itemList=["Köln", ""],
        outputEIS="o",
        completeState=1,
    ),
    rows(
        "RESP_GET_DETAILS",
        'inputEIS: "i"',
        "validState: valid",
        'requestedFields: "GEO" ',
        'outputEIS: "o"',
        inputEIS="i",
        validState=1,
        requestedFields=["GEO"],
        outputEIS="o",
    ),
    row(
        "RESP_RESOLVE_LOCATION",
        lines(
            "RESP_RESOLVE_LOCATION",
            'inputEIS: "i"',
            "validState: valid",
            'outputEIS: "o"',
            'ambiguity: "ambiguous"',
            'ambiguityType: "street"',
            'unresolvedElements: "u"',
        )
        + "\n",
        inputEIS="i",
        validState=1,
        outputEIS="o",
        ambiguity=1,
        ambiguityType="street",
        unresolvedElements="u",
    ),
    rows("RESP_ADD_DATA_SRC", 'inputEIS: "usb"', "validState: valid", inputEIS="usb", validState=1),
    rows("RESP_REM_DATA_SRC", 'inputEIS: "usb"', "validState: invalid", inputEIS="usb"),
]

MAPS = [
    rows(
        "RESP_SET_WORLD_PROPERTIES",
        'inputEIS: "i"',
        "validState: valid",
        "worldElements: zoom visible ",
        'itemList: "a" "b" ',
        inputEIS="i",
        validState=1,
        worldElements=0xD,
        itemList=["a", "b"],
    ),
    rows(
        "RESP_SCREEN_SHOT",
        "validState: valid, map: left, filename: a.png",
        map="left",
        validState=1,
        filename="a.png",
    ),
    row(
        "RESP_PICK_INFO",
        lines(
            "RESP_PICK_INFO",
            "mapEIS: left",
            "xCoordinate: 10",
            "yCoordinate: -20",
            "xWorldCoordinate: 1.500000",
            "yWorldCoordinate: -2.250000",
            "worldElements: 3 geoCoordinate locationDetails ",
            "radius: 40",
        )
        + "RESP_PICK_INFO> pickInfo:   0. (first)\n   1. (second)\n\n",
        mapEIS="left",
        xCoordinate=10,
        yCoordinate=-20,
        xWorldCoordinate=1.5,
        yWorldCoordinate=-2.25,
        worldElements=3,
        radius=40,
        pickInfo=["first", "second"],
    ),
    rows("RESP_MAP_CONTROLS", 'mapControls: "m"', "validState: valid", mapControls="m", validState=1),
    rows("INFO_VEH_LOC_INFO_DETAILS", 'posInfo: "<JVA>5<*>"', posInfo="<JVA>5<*>"),
    rows(
        "INFO_MAP_OVERLAY_AREA",
        '"<GLL>1 2<*><GUR>3.5 -4<*>"',
        eis="<GLL>1 2<*><GUR>3.5 -4<*>",
    ),
    rows("INFO_MAP_OVERLAY_SURFACE_INVALID", '"<SID>gwx_0<*>"', eis="<SID>gwx_0<*>"),
]

TRIPS = [
    rows(
        "RESP_BLOCK_ROUTE",
        "validState: valid",
        'blockedItems: "A3" "A92" ',
        blockedItems=["A3", "A92"],
        validState=1,
    ),
    row(
        "RESP_NEW_TRIP",
        'RESP_NEW_TRIP> destinations: 1. ("home",("x","yy"))\n2. ("work")\n\n'
        + lines(
            "RESP_NEW_TRIP",
            'routeModes: "fastest|avoidTollroads" "0" ',
            "validState: valid",
            "handles: 7 -1 ",
        ),
        destinations=[["home", ["x", "yy"]], ["work", []]],
        routeModes=[0x21, 0],
        validState=1,
        handles=[7, -1],
    ),
    rows(
        "RESP_NEW_TRIP_FILE",
        'pathEIS: "/a.trip"',
        'routeModes: "shortest" ',
        "validState: invalid",
        "handles: 8 ",
        pathEIS="/a.trip",
        routeModes=[2],
        handles=[8],
    ),
    rows("RESP_KILL_TRIP", "handles: 7 8 ", handles=[7, 8]),
    rows("INFO_DEMO_MODE_STATE", "Invalid (3)", state=3),
    not_implemented("INFO_GET_INCIDENTS_ON_ROUTE"),
    rows("INFO_ACTIVE_ROUTE_DESC", "routeDesc: (1,-1,3)", routeDesc1=1, routeDesc2=-1, routeDesc3=3),
    rows(
        "INFO_NEXT_MAN_INFO",
        "timeDist: (30, 400)",
        "nextManInfo: (true, 3, 4)",
        time=30,
        distance=400,
        nextManInfo1=1,
        nextManInfo2=3,
        nextManInfo3=4,
    ),
    rows("INFO_NEXT_DEST_INFO", "nextDestInfo: (7, 8)", nextDestInfo1=7, nextDestInfo2=8),
    rows(
        "INFO_CALC_STATE",
        "routeHandle: 7",
        "calcState: Calculating",
        "calcPercent: 99",
        routeHandle=7,
        calcState=3,
        calcPercent=99,
    ),
    rows("RESP_ROUTE_START_RECORDING", "validState: valid", validState=1),
    rows("INFO_ROUTE_RECORDING_ACTIVE", "routeRecordingActive: true", routeRecordingActive=1),
    rows("INFO_ROUTE_RECORDING_COMPLETE", 'detailsEIS: "d"', detailsEIS="d"),
    rows(
        "INFO_DESTINATION_REACHED",
        "Dest: Passau",
        "Element: 1   Total: 2",
        dest="Passau",
        element=1,
        total=2,
    ),
    rows("INFO_LANE_INFORMATION", 'detailsEIS: "<LAN>2<*>"', detailsEIS="<LAN>2<*>"),
]

STATES = [
    row("RESP_INIT", "RESP_INIT> Initialization error! (5)\n", result=5),
    rows("RESP_SHUTDOWN", "Shutdown process is finished."),
    rows("RESP_RESTORE_FACTORY", "Response received."),
    rows("INFO_HEARTBEAT", "Heartbeat"),
    rows("INFO_MEASUREMENT_SYSTEM", "measurementSystem: metric", measurementSystem=8),
    not_implemented("INFO_APPEARANCE_STYLE"),
    rows("INFO_LANGUAGE_INFO", "langInfo: (LangHindi, 7)", language=26, number=7),
    rows("INFO_HIGHWAYMODE_UPDATE", "Enabled", state=1),
    rows("INFO_VEH_SPEED_MODE", "mode: valueMode", "speed: 130", mode=1, speed=130),
    rows("INFO_SAFETY_CAMERA_MODE", "safetyWarningsOn", mode=1),
    rows("INFO_SAFETY_CAMERA_AUDIO_MODE", 'inputEIS: "beep"', "valid", inputEIS="beep", state=1),
    rows("INFO_REQU_SET_VOLUME_LEVEL", "<VOL>5<*>", text="<VOL>5<*>"),
    rows(
        "INFO_PROMPT_READY",
        "audioSource: AudioManual",
        "requestPromptReady sent",
        audioSource=2,
    ),
    rows("INFO_ADA_IS_ENABLED", "isEnabled: on", isEnabled=1),
    rows("INFO_ACTIVE_AUDIO_SRC", "audioSource: invalid value", audioSource=4),
    rows("RESP_PLAY_PROMPT", "prompt: 11", "validState: 1", prompt=11, validState=1),
]

EVENTS = "   1. (jam)\n   2. (ice)\n"
TRAFFIC = [
    rows("INFO_TMC_MODE", "off", mode=2),
    rows("INFO_TMC_ROUTE_MODE", "mode: delay", "delayThreshold: 600", mode=4, delayThreshold=600),
    row(
        "INFO_TMC_ROUTES_AVAILABLE",
        lines("INFO_TMC_ROUTES_AVAILABLE", "routeHandles: 7 8 ")
        + f"INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:{EVENTS}\n"
        + "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:   1. (fog)\n\n",
        routeHandles=[7, 8],
        tmcNewEvents=["jam", "ice"],
        tmcDeletedEvents=["fog"],
    ),
    row(
        "INFO_TMC_ROUTE_ACCEPTED",
        lines("INFO_TMC_ROUTE_ACCEPTED", "routeHandle: 7 ")
        + f"INFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:{EVENTS}\n"
        + "INFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:\n",
        routeHandle=7,
        tmcNewEvents=["jam", "ice"],
    ),
    rows("INFO_TMC_ROUTES_DELETED", "routeHandles: 7 8 ", routeHandles=[7, 8]),
    not_implemented("INFO_TMC_AVOIDS_CHANGED"),
    rows("INFO_TMC_INFO_CHANGED", "tmcInfoChanged: 5 ", tmcInfoChanged=5),
    row("INFO_TMC_NEW_EVENTS", f"INFO_TMC_NEW_EVENTS> tmcEvents:{EVENTS}", tmcEvents=["jam", "ice"]),
    row("INFO_TMC_DEL_EVENTS", "INFO_TMC_DEL_EVENTS> tmcEvents:   1. (fog)\n", tmcEvents=["fog"]),
    rows(
        "INFO_TMC_TUNING_MODE",
        "tmcTuningMode: tmcTuningAutomatic",
        'tuningParameters: "fm"',
        tmcTuningMode=1,
        tuningParameters="fm",
    ),
]

UPDATES = [
    rows("RESP_GET_SW_VERSION", "swVersion: 1.2.3", swVersion="1.2.3"),
    rows("RESP_GET_DB_VERSION", "dbVersion: 2024", dbVersion="2024"),
    row(
        "RESP_CHECK_FOR_UPDATE",
        'RESP_CHECK_FOR_UPDATE> Path: "/usb" r: updOlderPackage|updSamePackage(40), u: on\n'
        'delete: "old"\ncopy: "c1"\ncopy: "c2"\n',
        path="/usb",
        result=40,
        update=1,
        delete=["old"],
        copy=["c1", "c2"],
    ),
    rows("INFO_UPDATE_PROGRESS", 'updatePath: "/usb"', "percent: 75", updatePath="/usb", percent=75),
    row(
        "RESP_STORE_DEVICE_STATUS",
        'RESP_DEVICE_STATUS> Path: "/tmp", result: invalid\n',
        path="/tmp",
        result=2,
    ),
    # Last of all, so that whoever sees it has seen everything.
    row("CMD_PACKAGE_LOADED", "Package loaded!\n"),
]

MESSAGES = SEARCHES + MAPS + TRIPS + STATES + TRAFFIC + UPDATES
