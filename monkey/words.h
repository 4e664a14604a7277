// SPDX-License-Identifier: Apache-2.0
// The monkey's own word lists. Oddity: some words are unknown to the command language's tables,
// which then take their defaults.
#pragma once

namespace ventrik {

// Each draws once and gives one word. Monkey's thread.

const wchar_t* DrawOnOff();
const wchar_t* DrawSafetyWarningMode();
const wchar_t* DrawWarningMode();
const wchar_t* DrawBlockAction();
const wchar_t* DrawTuningMode();
const wchar_t* DrawTmcAction();
const wchar_t* DrawAudioMode();
const wchar_t* DrawMeasurementUnit();
const wchar_t* DrawTmcMode();
const wchar_t* DrawSendingMode();
const wchar_t* DrawContentType();
const wchar_t* DrawSortOrder();
const wchar_t* DrawTmcMessageClass();
const wchar_t* DrawItemTag();
const wchar_t* DrawLanguage();
const wchar_t* DrawRouteMode();

}  // namespace ventrik
