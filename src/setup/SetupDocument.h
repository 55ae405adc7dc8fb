#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "setup/catalogue/MP_TYPES.h"

namespace tvn2x {

/// One measurement setup in memory: channels, receiver settings, parameter table, notes, identity.
///
/// Every setter marks the document dirty where the value differs, except Count, CoupleDisplayAndSave and Mode. Nothing
/// is checked against limits here (the editor does that). An index outside its table raises 9 and changes nothing.
class SetupDocument
{
public:
    SetupDocument();

    // Channels, 1..ListSize. A list without channels has the single row 0.
    int32_t ListSize() const { return listSize_; }
    void ListSize(int32_t size);              ///< a new size clears every row
    double Frequency(int32_t channel) const;  ///< centre frequency in MHz
    void Frequency(int32_t channel, double megahertz);
    double SymbolRate(int32_t channel) const;  ///< in MSymb/s
    void SymbolRate(int32_t channel, double megasymbols);
    const std::wstring& UserField(int32_t channel) const;
    void UserField(int32_t channel, std::wstring text);

    // Parameter table, 1..Count.
    int32_t Count() const { return count_; }
    void Count(int32_t count);  ///< stores at least 30; entries that stay keep their values
    bool Parameter(int32_t action, int32_t parameter) const;  ///< action 1 displayed, 2 saved, 0 either
    void Parameter(int32_t action, int32_t parameter, bool value);
    int16_t Order(int32_t parameter) const;  ///< display position from 1, -1 for none
    void Order(int32_t parameter, int16_t position);
    std::wstring Caption(int32_t parameter) const;  ///< the RF level's with " (unit)" behind it
    void Caption(int32_t parameter, std::wstring text);
    const std::wstring& StoredCaption(int32_t parameter) const;  ///< as the file keeps it: without the unit
    void StoredCaption(int32_t parameter, std::wstring text);    ///< replaces it without marking the document dirty

    // Static settings.
    const std::wstring& LevelUnit() const { return levelUnit_; }
    void LevelUnit(std::wstring name);
    void LevelUnitDirect(std::wstring name) { levelUnit_ = std::move(name); }  ///< without marking the document dirty
    int32_t ReferenceSource() const { return referenceSource_; }               ///< 0 internal, 1 external
    void ReferenceSource(int32_t source) { Change(referenceSource_, source); }
    int32_t BerSamples() const { return berSamples_; }  ///< blocks of 10^7 bits
    void BerSamples(int32_t samples) { Change(berSamples_, samples); }
    int32_t SawBw() const { return sawBw_; }  ///< MHz, 0 = off
    void SawBw(int32_t megahertz) { Change(sawBw_, megahertz); }
    int32_t OrderOfQam() const { return orderOfQam_; }
    void OrderOfQam(int32_t order) { Change(orderOfQam_, order); }
    int32_t RollOffFactor() const { return rollOffFactor_; }  ///< hundredths
    void RollOffFactor(int32_t hundredths) { Change(rollOffFactor_, hundredths); }
    int32_t Zin() const { return zin_; }  ///< input route: 2, 4, 50, 75 or 128
    void Zin(int32_t route) { Change(zin_, route); }
    double DefaultSymbolRate() const { return defaultSymbolRate_; }  ///< MSymb/s
    void DefaultSymbolRate(double megasymbols) { Change(defaultSymbolRate_, megasymbols); }
    int32_t MaxSettlingTime() const { return maxSettlingTime_; }  ///< seconds
    void MaxSettlingTime(int32_t seconds) { Change(maxSettlingTime_, seconds); }
    bool CoupleDisplayAndSave() const { return coupleDisplayAndSave_; }
    void CoupleDisplayAndSave(bool couple) { coupleDisplayAndSave_ = couple; }

    // X-axis choices and notes.
    int32_t XAxis(int32_t destination) const;  ///< 0 display grid, 1 result file
    void XAxis(int32_t destination, int32_t choice);
    const std::wstring& Notes() const { return notes_; }
    void Notes(std::wstring text);
    void NotesDirect(std::wstring text) { notes_ = std::move(text); }  ///< without marking the document dirty
    bool ShowNotesBefore() const { return showNotesBefore_; }
    void ShowNotesBefore(bool show) { Change(showNotesBefore_, show); }
    bool ShowNotesAfter() const { return showNotesAfter_; }
    void ShowNotesAfter(bool show) { Change(showNotesAfter_, show); }

    // Identity and state. None of these marks the document dirty.
    bool dirty = false;
    bool isBackup = false;
    int32_t mode = 4;
    std::wstring productName;
    std::wstring appVersion;
    std::wstring fullPath;  ///< "" while the document has no file

    // What the document carries for the measurement through a backup copy.
    std::wstring measurementNotes;
    bool measurementShowNotesAfter = false;

    std::wstring FolderOfFile() const;  ///< "" while the document has no file
    std::wstring FileTitle() const;     ///< file name without extension; "Untitled" while there is none

private:
    /// A row of the channel list.
    struct Channel
    {
        double frequency = 0;   ///< MHz
        double symbolRate = 0;  ///< MSymb/s
        std::wstring userField;
    };
    /// What the document knows of a parameter.
    struct Entry
    {
        std::array<bool, 3> action{};
        int32_t order = 0;
        std::wstring caption;
    };

    template <class T>
    void Change(T& stored, std::type_identity_t<T> value)
    {
        dirty = dirty || stored != value;
        stored = std::move(value);
    }

    const Channel& Row(int32_t channel, const wchar_t* source) const;
    Channel& Row(int32_t channel, const wchar_t* source);
    const Entry& At(int32_t parameter, const wchar_t* source) const;
    Entry& At(int32_t parameter, const wchar_t* source);

    int32_t listSize_ = 0;
    std::vector<Channel> channels_;  ///< row 0 is used only while the list is empty
    int32_t count_ = 0;
    std::vector<Entry> parameters_;  ///< index 0 is no parameter
    std::wstring levelUnit_ = L"dBmV";
    int32_t referenceSource_ = 0;
    int32_t berSamples_ = 10;
    int32_t sawBw_ = 8;
    int32_t orderOfQam_ = 64;
    int32_t rollOffFactor_ = 15;
    int32_t zin_ = 75;
    double defaultSymbolRate_ = 6.9;
    int32_t maxSettlingTime_ = 10;
    bool coupleDisplayAndSave_ = true;
    std::array<int32_t, 2> xAxis_{};
    std::wstring notes_;
    bool showNotesBefore_ = false;
    bool showNotesAfter_ = false;
};

}  // namespace tvn2x
