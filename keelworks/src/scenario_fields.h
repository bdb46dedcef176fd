#pragma once
// The order of a scenario's fields in its file, once for the parser and the writer. A visitor has
//   Text(char (&)[N])      bytes of a text, its end filled with zeros
//   Reserved(uint8_t(&)[N]) zeros
//   Flag(x)                a byte, 0 or 1
//   Words(x, ...)          32-bit numbers of any value
//   Range(low, high, x, ...) 32-bit numbers from low to high

#include <concepts>
#include <type_traits>

#include "keelworks/scenario.h"

/// Where the checksum lies, which counts as zero in its own sum.
inline constexpr std::size_t SCENARIO_CHECKSUM_OFFSET = 4;
inline constexpr std::int32_t SCENARIO_MOST_HOURS = 12;
inline constexpr std::int32_t SCENARIO_MOST_MINUTES = 59;
/// In front of each item: category, type and size of its record.
inline constexpr std::size_t SCENARIO_ITEM_HEAD = 3 * sizeof(std::uint32_t);

/// The record, constant for the writer, as it is for the parser.
template <class T, class Record>
concept OneOf = std::same_as<std::remove_const_t<T>, Record>;

template <class Visitor, class Header>
void VisitHeader(Visitor& v, Header& h)
{
    v.Words(h.dwChecksum);
    v.Reserved(h.reserved0);
    v.Text(h.szScene);
    v.Reserved(h.reserved1);
    v.Range(0, SCENARIO_MOST_HOURS, h.nHours);
    v.Range(0, SCENARIO_MOST_MINUTES, h.nMinutes);
    v.Words(h.nTimeFlags);
    v.Range(0, 0, h.settings.reserved0[0], h.settings.reserved0[1]);
    v.Words(h.settings.nSideANation, h.settings.nSideACount);
    v.Range(0, 0, h.settings.reserved1);
    v.Words(h.settings.nSideBNation, h.settings.nSideBCount);
    v.Range(0, 0, h.settings.reserved2);
    v.Words(h.nVersion);
    v.Reserved(h.reserved2);
    v.Words(h.nSideAExtra, h.nSideBExtra);
    v.Range(0, SCENARIO_MAX_FIGURE, h.nFlagExtra);
    v.Reserved(h.reserved3);
}

template <class Visitor, class Custom>
void VisitCustom(Visitor& v, Custom& c)
{
    v.Flag(c.bCustomA);
    v.Reserved(c.reserved0);
    v.Words(c.guidA.words[0], c.guidA.words[1], c.guidA.words[2], c.guidA.words[3]);
    v.Flag(c.bCustomB);
    v.Reserved(c.reserved1);
    v.Words(c.guidB.words[0], c.guidB.words[1], c.guidB.words[2], c.guidB.words[3]);
    v.Reserved(c.reserved2);
}

template <class Visitor, class Unit>
void VisitUnit(Visitor& v, Unit& u)
{
    v.Text(u.szFullName);
    v.Text(u.szName);
    v.Text(u.szModel);
    v.Text(u.szCode);
}

template <class Visitor, class Place>
void VisitPlace(Visitor& v, Place& p)
{
    v.Range(-SCENARIO_MAX_DISTANCE, SCENARIO_MAX_DISTANCE, p.nX, p.nY);
    v.Range(0, SCENARIO_MAX_HEADING, p.nHeading);
    v.Range(0, SCENARIO_MAX_KNOTS, p.nKnots);
    v.Range(0, SCENARIO_MAX_HEIGHT, p.nHeight);
}

template <class Visitor, OneOf<ScenarioShip> Ship>
void VisitItem(Visitor& v, Ship& s)
{
    VisitUnit(v, s.unit);
    auto& f = s.figures;
    v.Range(0, SCENARIO_MAX_FIGURE, f.nYear, f.nRate, f.nLength, f.nWireless, f.nDisplacement, f.nCrew,
            f.nClassText, f.nHullBow, f.nHullMiddle, f.nHullStern, f.nMainGuns, f.nSecondaryGuns,
            f.nMachineGuns, f.nMainCalibre, f.nTorpedoTubes, f.nTorpedoCalibre, f.nSecondaryCalibre,
            f.nLightGuns, f.nLightCalibre, f.nHighAngleGuns, f.nHighAngleCalibre, f.nMachineCalibre,
            f.nDepthCharges, f.nDepthChargeWeight, f.nSpeed, f.nArmourTurret, f.nArmourDeck, f.nArmourBelt,
            f.nEndurance);
    VisitPlace(v, s.place);
    v.Range(0, SCENARIO_MAX_LEVEL, s.nLevel);
    v.Range(0, SCENARIO_MAX_PERCENT, s.nRatings[0], s.nRatings[1], s.nRatings[2], s.nRatings[3],
            s.nRatings[4]);
    v.Reserved(s.reserved);
    v.Range(SCENARIO_SIDE_A, SCENARIO_NEUTRAL, s.nSide);
}

template <class Visitor, class Item>
void VisitTrainingAndSide(Visitor& v, Item& item)
{
    VisitPlace(v, item.place);
    v.Range(0, SCENARIO_MAX_LEVEL, item.nLevel);
    v.Range(0, SCENARIO_MAX_PERCENT, item.nSkill);
    v.Reserved(item.reserved);
    v.Range(SCENARIO_SIDE_A, SCENARIO_SIDE_B, item.nSide);
}

template <class Visitor, OneOf<ScenarioBalloon> Balloon>
void VisitItem(Visitor& v, Balloon& b)
{
    VisitUnit(v, b.unit);
    auto& f = b.figures;
    v.Range(0, SCENARIO_MAX_FIGURE, f.nYear, f.nClassText, f.nCrew, f.nVolume, f.nSpeed, f.nCeiling,
            f.nEndurance, f.nBombs, f.nMachineGuns);
    VisitTrainingAndSide(v, b);
}

template <class Visitor, OneOf<ScenarioSubmarine> Submarine>
void VisitItem(Visitor& v, Submarine& s)
{
    VisitUnit(v, s.unit);
    auto& f = s.figures;
    v.Range(0, SCENARIO_MAX_FIGURE, f.nYear, f.nClassText, f.nCrew, f.nDisplacement, f.nSpeed, f.nSpeedBelow,
            f.nTorpedoTubes, f.nTorpedoes);
    VisitTrainingAndSide(v, s);
}
