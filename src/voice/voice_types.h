// The eight voice types of the Voice Type menu: their menu names, the engine
// index each stands for under "Windows 7" and under "Windows XP/Windows
// Vista", and how this platform's speech engine renders them.
#pragma once

#include <array>

struct VoiceType {
    const char* item;        // menu item name
    const char* caption;
    int indexWindowsSeven;
    int indexWindowsXP;
    // Rendering: the engine voice asked for first (any voice when absent), pitch and rate (-1 to 1).
    const char* engineVoice;
    bool female;
    double pitch;
    double rate;
};

inline constexpr std::array<VoiceType, 8> kVoiceTypes{{
    {"Female", "Female Normal", 1, 1, "slt", true, 0.0, 0.0},
    {"FemaleReverb", "Female Reverb", 6, 8, "slt", true, -0.25, -0.2},
    {"CylonOne", "Female Cylon", 9, 11, "slt", true, -0.7, -0.1},
    {"ElectronicOne", "Female Electronic", 8, 10, "slt", true, 0.5, 0.15},
    {"Male", "Male Normal", 14, 3, "rms", false, 0.0, 0.0},
    {"MaleReverb", "Male Reverb", 15, 17, "awb", false, -0.25, -0.2},
    {"CylonTwo", "Male Cylon", 13, 15, "kal16", false, -0.7, -0.1},
    {"ElectronicTwo", "Male Electronic", 12, 14, "kal", false, 0.3, 0.15},
}};

// The type an engine index stands for in the column in force; null for an index no type uses.
inline const VoiceType* voiceTypeOfIndex(int index, bool windowsSeven)
{
    for (const VoiceType& t : kVoiceTypes)
        if ((windowsSeven ? t.indexWindowsSeven : t.indexWindowsXP) == index)
            return &t;
    return nullptr;
}
