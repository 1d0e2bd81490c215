#include <vector>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

enum class Kind {
  Plain,  // invalid when there is none
  Aged,   // the same, and too old from an age on
  Off,    // -1 with the Pass flag when there is none
};
constexpr Kind Plain = Kind::Plain;
constexpr Kind Aged = Kind::Aged;
constexpr Kind Off = Kind::Off;

struct Expected {
  const char* name;
  Kind kind;
  double number;
};

// What a channel holds: bytes with ordinary numbers and what they mean, and bytes that say that
// there is nothing. `too_old` is the lowest age that does not count, 0 for a channel without age.
struct Sample {
  int channel;
  int too_old;
  Eight ordinary;
  Eight nothing;
  std::vector<Expected> expected;
};

constexpr int kNone16 = 0xFFFF;
constexpr int kNoneSigned = -0x8000;
const Eight kAllSet = {255, 255, 255, 255, 255, 255, 255, 255};

// Three fields of two bytes and an age; the last byte is a pair of nibbles with none in both.
Eight none3(int number) {
  return Data().s(number).s(number).s(number).b(0).b(0xFF);
}

std::vector<Sample> samples_of_all() {
  return {
      {0,
       0,
       Data().w(kMinute).b(12).b(4).b(5).b(6),
       Data().w(kMinute).b(-1).b(-1).b(-128).b(-2),
       {{"GpsNumObs", Plain, 12},
        {"GpsPosMode", Plain, 4},
        {"GpsVelMode", Plain, 5},
        {"GpsAttMode", Plain, 6}}},
      {3,
       150,
       Data().s(500).s(600).s(65534).b(149).b(7),
       none3(kNone16),
       {{"NorthAcc", Aged, 0.5},
        {"EastAcc", Aged, 0.6},
        {"AltAcc", Aged, 65.534},
        {"UmacStatus", Plain, 7}}},
      {4,
       150,
       Data().s(20).s(25).s(40000).b(0).b(3),
       none3(kNone16),
       {{"VnAcc", Aged, 0.020},
        {"VeAcc", Aged, 0.025},
        {"VdAcc", Aged, 40.0},
        {"Generator", Plain, 3}}},
      {5,
       150,
       Data().s(100).s(110).s(1200).b(0).b(2),
       none3(kNone16),
       {{"HeadingAcc", Aged, 100 * 1e-5 * kDegrees},
        {"PitchAcc", Aged, 110 * 1e-5 * kDegrees},
        {"RollAcc", Aged, 1200 * 1e-5 * kDegrees}}},
      {6,
       150,
       Data().s(200).s(-200).s(-1).b(0).b(0x9E),
       none3(kNoneSigned),
       {{"WxBias", Aged, 200 * 5e-6 * kDegrees},
        {"WyBias", Aged, -200 * 5e-6 * kDegrees},
        {"WzBias", Aged, -5e-6 * kDegrees},
        {"GpsInt1_NumMeasGpsL1", Plain, 14},
        {"GpsInt1_NumMeasGpsL2", Plain, 9}}},
      {7,
       150,
       Data().s(300).s(-300).s(5).b(0).b(0x21),
       none3(kNoneSigned),
       {{"AxBias", Aged, 0.03},
        {"AyBias", Aged, -0.03},
        {"AzBias", Aged, 0.0005},
        {"GpsInt2_NumMeasGpsL1", Plain, 1},
        {"GpsInt2_NumMeasGpsL2", Plain, 2}}},
      {8,
       150,
       Data().s(1000).s(-32767).s(32767).b(0).b(0x43),
       none3(kNoneSigned),
       {{"WxSf", Aged, 0.001},
        {"WySf", Aged, -0.032767},
        {"WzSf", Aged, 0.032767},
        {"GpsExt1_NumMeasGpsL1", Plain, 3},
        {"GpsExt1_NumMeasGpsL2", Plain, 4}}},
      {9,
       150,
       Data().s(10).s(20).s(40000).b(0).b(0x65),
       none3(kNone16),
       {{"WxBiasAcc", Aged, 10e-6 * kDegrees},
        {"WyBiasAcc", Aged, 20e-6 * kDegrees},
        {"WzBiasAcc", Aged, 0.04 * kDegrees},
        {"GpsInt1_NumMeasGlonassL1", Plain, 5},
        {"GpsInt1_NumMeasGlonassL2", Plain, 6}}},
      {10,
       150,
       Data().s(10).s(20).s(40000).b(0).b(0x87),
       none3(kNone16),
       {{"AxBiasAcc", Aged, 1e-4},
        {"AyBiasAcc", Aged, 2e-4},
        {"AzBiasAcc", Aged, 0.4},
        {"GpsInt2_NumMeasGlonassL1", Plain, 7},
        {"GpsInt2_NumMeasGlonassL2", Plain, 8}}},
      {11,
       150,
       Data().s(10).s(20).s(40000).b(0).b(0x0A),
       none3(kNone16),
       {{"WxSfAcc", Aged, 1e-5},
        {"WySfAcc", Aged, 2e-5},
        {"WzSfAcc", Aged, 0.04},
        {"GpsExt1_NumMeasGlonassL1", Plain, 10},
        {"GpsExt1_NumMeasGlonassL2", Plain, 0}}},
      {12,
       150,
       Data().s(1500).s(-250).s(-1).b(0),
       none3(kNoneSigned),
       {{"GAPx", Aged, 1.5}, {"GAPy", Aged, -0.25}, {"GAPz", Aged, -0.001}}},
      {13,
       150,
       Data().s(100).s(-50).s(1234).b(0).b(0x56),
       Data().s(kNoneSigned).s(kNoneSigned).s(1234).b(0).b(255),
       {{"AtH", Aged, 0.01 * kDegrees},
        {"AtP", Aged, -0.005 * kDegrees},
        {"HeadNumMeasGpsUsedL1", Plain, 6},
        {"HeadNumMeasGpsTotal", Plain, 5}}},
      {14,
       150,
       Data().s(10).s(20).s(30).b(0).b(0x78),
       none3(kNone16),
       {{"GAPxAcc", Aged, 0.001},
        {"GAPyAcc", Aged, 0.002},
        {"GAPzAcc", Aged, 0.003},
        {"GpsPosNumObsGps", Plain, 8},
        {"GpsPosNumObsGlonass", Plain, 7}}},
      {15,
       150,
       Data().s(100).s(200).s(300).b(0).b(0x12),
       none3(kNone16),
       {{"AtHAcc", Aged, 0.001 * kDegrees},
        {"AtPAcc", Aged, 0.002 * kDegrees},
        {"BaseLineLengthAcc", Aged, 0.03},
        {"HeadNumMeasGlonassUsedL1", Plain, 2},
        {"HeadNumMeasGlonassTotal", Plain, 1}}},
      {16,
       1,
       Data().s(100).s(-200).s(300).b(0).b(37),
       none3(kNoneSigned),
       {{"Imu2VehHeading", Aged, 0.01 * kDegrees},
        {"Imu2VehPitch", Aged, -0.02 * kDegrees},
        {"Imu2VehRoll", Aged, 0.03 * kDegrees}}},
      {21,
       0,
       Data().w(12345678).w(3),
       Data().w(-1).w(-2),
       {{"DiskSpace", Plain, 12345678.0 * 1024}, {"FileSize", Plain, 3072}}},
      {22,
       0,
       Data().b(1).b(2).b(3).b(4).b(254),
       kAllSet,
       {{"TimeMismatch", Plain, 1},
        {"ImuTimeDiff", Plain, 2},
        {"ImuTimeMargin", Plain, 3},
        {"ImuLoopTime", Plain, 4},
        {"OpLoopTime", Plain, 254}}},
      {23,
       0,
       Data().s(7).s(100).b(1).b(2).b(3).b(4),
       kAllSet,
       {{"BnsLag", Plain, 7},
        {"BnsLagFilt", Plain, 7},
        {"UpTime", Plain, 100},
        {"GPSPosReject", Plain, 1},
        {"GPSVelReject", Plain, 2},
        {"GPSAttReject", Plain, 3},
        {"PTPStatus", Plain, 4}}},
      {26,
       1,
       Data().s(1000).s(-2000).s(3).b(0).b(9),
       none3(kNoneSigned),
       {{"RemoteLeverArmX", Aged, 1000 * kLeverStep},
        {"RemoteLeverArmY", Aged, -2000 * kLeverStep},
        {"RemoteLeverArmZ", Aged, 3 * kLeverStep},
        {"HeaveDCCoupling", Plain, 9}}},
      {27,
       0,
       Data().b(1).b(2).b(3).b(1).b(200).b(100),
       kAllSet,
       {{"HeadQuality", Plain, 1},
        {"HeadSearchType", Plain, 2},
        {"HeadSearchStatus", Plain, 3},
        {"HeadSearchReady", Plain, 1},
        {"HeadSearchInit", Plain, 200},
        {"HeadSearchNum", Plain, 100}}},
      {28,
       0,
       Data().b(0).b(1).b(30).b(254).b(20).b(3),
       kAllSet,
       {{"HeadSearchMaster", Plain, 1},
        {"HeadSearchSlave1", Plain, 2},
        {"HeadSearchSlave2", Plain, 31},
        {"HeadSearchSlave3", Plain, 255},
        {"HeadSearchTime", Plain, 20},
        {"HeadSearchConstr", Plain, 3}}},
      {29,
       0,
       Data().b(0).b(1).b(2).b(3).b(4).b(5).b(2),
       {128, 255, 129, 128, 200, 255, 254, 0},
       {{"OptionLevel", Plain, 0},
        {"OptionVibration", Plain, 1},
        {"OptionGpsAcc", Plain, 2},
        {"OptionUdp", Plain, 3},
        {"OptionSer1", Plain, 4},
        {"OptionSer2", Plain, 5},
        {"OptionHeading", Plain, 2}}},
      {31,
       0,
       Data().b(1).b(5).b(6).b(7).b(8).b(9).b(3).b(255),
       kAllSet,
       {{"ImuType", Plain, 1},
        {"GpsInt1_Type", Plain, 5},
        {"GpsInt2_Type", Plain, 6},
        {"InterPcbType", Plain, 7},
        {"FrontPcbType", Plain, 8},
        {"InterSwId", Plain, 9},
        {"HwConfig", Plain, 3}}},
      {33,
       1,
       Data().s(1).s(-2).s(3000),
       none3(kNoneSigned),
       {{"ZeroVelLeverArmX", Aged, 0.001},
        {"ZeroVelLeverArmY", Aged, -0.002},
        {"ZeroVelLeverArmZ", Aged, 3.0}}},
      {34,
       1,
       Data().s(1).s(2).s(40000),
       none3(kNone16),
       {{"ZeroVelLeverArmXAcc", Aged, 1e-4},
        {"ZeroVelLeverArmYAcc", Aged, 2e-4},
        {"ZeroVelLeverArmZAcc", Aged, 4.0}}},
      {35,
       1,
       Data().s(1).s(-2).s(3000),
       none3(kNoneSigned),
       {{"NoSlipLeverArmX", Aged, 0.001},
        {"NoSlipLeverArmY", Aged, -0.002},
        {"NoSlipLeverArmZ", Aged, 3.0}}},
      {36,
       1,
       Data().s(1).s(2).s(40000),
       none3(kNone16),
       {{"NoSlipLeverArmXAcc", Aged, 1e-4},
        {"NoSlipLeverArmYAcc", Aged, 2e-4},
        {"NoSlipLeverArmZAcc", Aged, 4.0}}},
      {37,
       255,
       Data().s(-500).s(900).b(1).b(2).b(150).b(3),
       Data().s(kNoneSigned).s(kNone16).b(255).b(255).b(0).b(255),
       {{"HeadingMisAlign", Aged, -0.05 * kDegrees},
        {"HeadingMisAlignAcc", Aged, 0.009 * kDegrees},
        {"GpsPosNumObs", Plain, 1},
        {"GpsVelNumObs", Plain, 2},
        {"GpsAttNumObs", Plain, 3}}},
      {38,
       0,
       Data().b(4).b(5).b(100).b(25).b(255).b(7),
       kAllSet,
       {{"OptionSZVDelay", Off, 4},
        {"OptionSZVPeriod", Off, 0.5},
        {"OptionTopSpeed", Off, 50},
        {"OptionInitSpeed", Off, 2.5},
        {"OptionSer3", Plain, 7}}},
      {39,
       0,
       Data().b(10).b(50).s(1000).b(25).b(50).b(30).b(40),
       kAllSet,
       {{"OptionNSDelay", Off, 1.0},
        {"OptionNSPeriod", Off, 1.0},
        {"OptionNSAngleStd", Off, 0.01 * kDegrees},
        {"OptionNSHAccel", Off, 1.0},
        {"OptionNSVAccel", Off, 2.0},
        {"OptionNSSpeed", Off, 3.0},
        {"OptionNSRadius", Off, 20}}},
      {40,
       0,
       Data().b(22).b(0).s(250).t(0x012345),
       kAllSet,
       {{"TxVersionId", Plain, 22},
        {"OutputLatency", Plain, 2.5},
        {"SerialNumber", Plain, 0x012345}}},
      {41,
       0,
       Data().b(3).b(4).b(5).b(6).w(0x0100007F),
       Data().w(-1).w(0),
       {{"OptionSer1Baud", Plain, 3},
        {"OptionSer2Baud", Plain, 4},
        {"OptionSer3Baud", Plain, 5},
        {"OptionCanBaud", Plain, 6}}},
      {42,
       0,
       Data().b(3).b(5).s(1000).b(7).b(50).b(5),
       kAllSet,
       {{"OptionHLDelay", Off, 3},
        {"OptionHLPeriod", Off, 0.5},
        {"OptionHLAngleStd", Off, 0.01 * kDegrees},
        {"OptionStatDelay", Off, 7},
        {"OptionStatSpeed", Off, 0.5},
        {"OptionHeadingModeRawInt", Plain, 1},
        {"OptionHeadingModeAttInt", Plain, 0},
        {"OptionHeadingModeAttExt", Plain, 1}}},
      {44,
       0,
       Data().s(1000).s(500).b(15).b(20).b(25),
       kAllSet,
       {{"WSpeedScale", Off, 100},
        {"WSpeedScaleStd", Off, 1.0},
        {"OptionWSpeedDelay", Off, 1.5},
        {"OptionWSpeedZVDelay", Off, 2.0},
        {"OptionWSpeedNoiseStd", Off, 2.5}}},
      {46,
       1,
       Data().s(1).s(-2).s(3000),
       none3(kNoneSigned),
       {{"WSpeedLeverArmX", Aged, 0.001},
        {"WSpeedLeverArmY", Aged, -0.002},
        {"WSpeedLeverArmZ", Aged, 3.0}}},
      {47,
       1,
       Data().s(1).s(2).s(40000),
       none3(kNone16),
       {{"WSpeedLeverArmXAcc", Aged, 1e-4},
        {"WSpeedLeverArmYAcc", Aged, 2e-4},
        {"WSpeedLeverArmZAcc", Aged, 4.0}}},
      {48,
       0,
       Data().s(-400).b(30).b(50).b(2).b(1).b(3),
       kAllSet,
       {{"HDOP", Plain, 3.0},
        {"PDOP", Plain, 5.0},
        {"VDOP", Plain, 4.0},
        {"OutputDatum", Plain, 2},
        {"DatumEllipsoid", Plain, 1},
        {"DatumFrame", Plain, 3}}},
      {49,
       0,
       Data().s(405).b(50).b(9).b(0b01010101).t(712345),
       kAllSet,
       {{"OmniStarFreq", Plain, 1520405000},
        {"OmniStarSNR", Plain, 10},
        {"OmniStarLockTime", Plain, 9},
        {"OmniStarSerialRaw", Plain, 712345},
        {"OmniStatusVbsExpired", Plain, 1},
        {"OmniStatusVbsOutOfRegion", Plain, 0},
        {"OmniStatusVbsNoRemoteSites", Plain, 1},
        {"OmniStatusHpExpired", Plain, 0},
        {"OmniStatusHpOutOfRegion", Plain, 1},
        {"OmniStatusHpNoRemoteSites", Plain, 0},
        {"OmniStatusHpNotConverged", Plain, 1},
        {"OmniStatusHpKeyInvalid", Plain, 0}}},
      {51,
       1,
       Data().s(1000).s(-2000).s(3),
       none3(kNoneSigned),
       {{"MeasPt1_PointXv", Aged, 1000 * kLeverStep},
        {"MeasPt1_PointYv", Aged, -2000 * kLeverStep},
        {"MeasPt1_PointZv", Aged, 3 * kLeverStep}}},
      {52, 1, Data().s(4), none3(kNoneSigned), {{"MeasPt2_PointXv", Aged, 4 * kLeverStep}}},
      {53, 1, Data().s(5), none3(kNoneSigned), {{"MeasPt3_PointXv", Aged, 5 * kLeverStep}}},
      {54, 1, Data().s(6), none3(kNoneSigned), {{"MeasPt4_PointXv", Aged, 6 * kLeverStep}}},
      {55,
       0,
       Data().b(0b0110).b(40).b(41).b(17).b(9).b(4).b(70).b(33),
       kAllSet,
       {{"GpsInt1_AntStatus", Plain, 2},
        {"GpsInt1_AntPower", Plain, 1},
        {"GpsInt1_CpuUsed", Plain, 40},
        {"GpsInt1_CoreNoise", Plain, 41},
        {"GpsInt1_SerBaud", Plain, 17},
        {"GpsInt1_NumSats", Plain, 9},
        {"GpsInt1_PosMode", Plain, 4},
        {"GpsInt1_CoreTemp", Plain, 0.0},
        {"GpsInt1_SupplyVolt", Plain, 3.3}}},
      {56,
       0,
       Data().b(0b1001).b(1).b(2).b(3).b(4).b(5).b(0).b(7),
       kAllSet,
       {{"GpsInt2_AntStatus", Plain, 1},
        {"GpsInt2_AntPower", Plain, 2},
        {"GpsInt2_NumSats", Plain, 4},
        {"GpsInt2_CoreTemp", Plain, -70.0}}},
      {57,
       150,
       Data().s(1000).s(-2000).s(30).b(0).b(3),
       Data().s(1000).s(-2000).s(30).b(0).b(0),
       {{"GAPx", Aged, 3.0}, {"GAPy", Aged, -6.0}, {"GAPz", Aged, 0.09}}},
      {58,
       1,
       Data().s(100).s(-200).s(300).b(0).b(0),
       none3(kNoneSigned),
       {{"Veh2OutHeading", Aged, 0.01 * kDegrees},
        {"Veh2OutPitch", Aged, -0.02 * kDegrees},
        {"Veh2OutRoll", Aged, 0.03 * kDegrees}}},
      {59,
       0,
       Data().w(0).s(366).s(10000),
       kAllSet,
       {{"NanoCalibration", Plain, 366 * 86400e9},
        {"DateCalibration", Plain, 19810106},
        {"ImuTemp", Plain, 30.0}}},
      {60,
       1,
       Data().s(100).s(-200).s(300),
       none3(kNoneSigned),
       {{"Ned2SurfHeading", Aged, 0.01 * kDegrees},
        {"Ned2SurfPitch", Aged, -0.02 * kDegrees},
        {"Ned2SurfRoll", Aged, 0.03 * kDegrees}}},
      {62,
       0,
       Data().b(0).b(1).b(2).b(3).b(4).b(5).b(100).b(50),
       kAllSet,
       {{"GpsExt1_AntStatus", Plain, 0},
        {"GpsExt1_AntPower", Plain, 0},
        {"GpsExt1_NumSats", Plain, 4},
        {"GpsExt1_CoreTemp", Plain, 30.0},
        {"GpsExt1_SupplyVolt", Plain, 5.0}}},
      {64,
       0,
       Data().b(3).b(4).b(5).b(6).b(0x21).b(0x43).b(0xFF).b(1),
       kAllSet,
       {{"CpuPcbType", Plain, 3},
        {"GpsExt1_Type", Plain, 4},
        {"GpsExt1_Format", Plain, 5},
        {"DualPortRamStatus", Plain, 6},
        {"GpsInt1_PosRate", Plain, 1},
        {"GpsInt1_VelRate", Plain, 2},
        {"GpsInt1_RawRate", Plain, 3},
        {"GpsInt2_RawRate", Plain, 4}}},
      {68, 1, Data().s(7), none3(kNoneSigned), {{"MeasPt5_PointXv", Aged, 7 * kLeverStep}}},
      {69, 1, Data().s(8), none3(kNoneSigned), {{"MeasPt6_PointXv", Aged, 8 * kLeverStep}}},
      {70, 1, Data().s(9), none3(kNoneSigned), {{"MeasPt7_PointXv", Aged, 9 * kLeverStep}}},
      {71, 1, Data().s(10), none3(kNoneSigned), {{"MeasPt8_PointXv", Aged, 10 * kLeverStep}}},
      {72,
       150,
       Data().s(10).s(-20).s(30).b(0).b(0x21),
       none3(kNoneSigned),
       {{"AxSf", Aged, 1e-5},
        {"AySf", Aged, -2e-5},
        {"AzSf", Aged, 3e-5},
        {"GpsDiffNumMeasGpsL1", Plain, 1},
        {"GpsDiffNumMeasGpsL2", Plain, 2}}},
      {73,
       150,
       Data().s(10).s(20).s(40000).b(0).b(0x43),
       none3(kNone16),
       {{"AxSfAcc", Aged, 1e-5},
        {"AySfAcc", Aged, 2e-5},
        {"AzSfAcc", Aged, 0.04},
        {"GpsDiffNumMeasGlonassL1", Plain, 3},
        {"GpsDiffNumMeasGlonassL2", Plain, 4}}},
      {75,
       0,
       Data().s(0).b(60).s(5000).b(3).b(4).b(40),
       kAllSet,
       {{"SupplyVolt", Plain, 12.0},
        {"ImuRate", Plain, 100.0},
        {"ImuAccelType", Plain, 3},
        {"ImuGyroType", Plain, 4}}},
      {76,
       0,
       Data().s(0).s(0).s(0).b(4).b(2),
       kAllSet,
       {{"GpsDiffNtripStatus", Plain, 4}, {"WiFiConnectionStatus", Plain, 2}}},
      {77,
       0,
       Data().b(1).b(2).b(3).w(0x00300801).b(1),
       {255, 255, 255, 255, 255, 255, 255, 254},
       // 40 bits from the low end: 0x0100300801 = 1 | 2 << 10 | 3 << 20 | 4 << 30
       {{"GpsDiffFormat", Plain, 1},
        {"GpsDiffType", Plain, 2},
        {"GpsDiffNumStations", Plain, 3},
        {"BaseStationSlot0", Plain, 1},
        {"BaseStationSlot1", Plain, 2},
        {"BaseStationSlot2", Plain, 3}}},
      {78,
       0,
       Data().b(1).b(2).s(0).b(3).b(4).b(0).b(0b10010110),
       kAllSet,
       {{"CanTxNum", Plain, 1},
        {"CanRxNum", Plain, 2},
        {"CanTxOk", Plain, 3},
        {"CanRxOk", Plain, 4},
        {"CanErrorCode", Plain, 150},
        {"CanErrorFlagStuffing", Plain, 0},
        {"CanErrorFlagFormat", Plain, 1},
        {"CanErrorFlagAcknowledge", Plain, 1},
        {"CanErrorFlagBit1", Plain, 0},
        {"CanErrorFlagBit0", Plain, 1},
        {"CanErrorFlagCheckSum", Plain, 0},
        {"CanErrorFlagBusOff", Plain, 0},
        {"CanErrorFlagNotActive", Plain, 1}}},
      {82,
       0,
       Data().b(1).b(2).b(3).b(4),
       kAllSet,
       {{"ImuPcbType", Plain, 1},
        {"GpsPcbType", Plain, 2},
        {"FlexPcbType", Plain, 3},
        {"AdkPcbType", Plain, 4}}},
      {83, 0, Data().s(0).s(0).s(0).b(9).b(0), kAllSet, {{"CrystalError", Plain, 9000}}},
      {89,
       1,
       Data().s(1).s(-2).s(3000).b(0).b(3),
       none3(kNoneSigned),
       {{"NoVSlipLeverArmX", Aged, 0.001},
        {"NoVSlipLeverArmY", Aged, -0.002},
        {"NoVSlipLeverArmZ", Aged, 3.0},
        {"WiFiAccessPointStatus", Plain, 3}}},
      {90,
       1,
       Data().s(1).s(2).s(40000).b(0).b(4),
       none3(kNone16),
       {{"NoVSlipLeverArmXAcc", Aged, 1e-4},
        {"NoVSlipLeverArmYAcc", Aged, 2e-4},
        {"NoVSlipLeverArmZAcc", Aged, 4.0},
        {"WiFiRegion", Plain, 4}}},
      {91,
       255,
       Data().s(-500).s(900).w(0),
       Data().s(kNoneSigned).s(kNone16).w(0),
       {{"PitchMisAlign", Aged, -0.05 * kDegrees}, {"PitchMisAlignAcc", Aged, 0.009 * kDegrees}}},
      {92,
       0,
       Data().b(10).b(50).s(1000).b(16).b(50).b(30).b(40),
       kAllSet,
       {{"OptionNVSDelay", Off, 1.0},
        {"OptionNVSPeriod", Off, 1.0},
        {"OptionNVSAngleStd", Off, 0.01 * kDegrees},
        {"OptionNVSPitch", Off, 0.1 * kDegrees},
        {"OptionNVSVAccel", Off, 2.0},
        {"OptionNVSSpeed", Off, 3.0},
        {"OptionNVSRadius", Off, 20}}},
      {93,
       0,
       Data().b(0).b(0x76).b(0x34).b(0xF2).b(199),
       kAllSet,
       {{"GpsPosNumObsGalileo", Plain, 6},
        {"GpsPosNumObsBeiDou", Plain, 7},
        {"NMEAOutputEnabled", Plain, 4},
        {"PTPEpoch", Plain, 3},
        {"PPSStatus", Plain, 2},
        {"LidarIPAddress", Plain, 199}}},
      {94,
       0,
       Data().b(0x21).b(0x43).b(0x65).b(0x87).b(0xA9).b(0xCB).b(0xED).b(0x10),
       kAllSet,
       {{"GpsInt1_NumMeasGalileoE1", Plain, 1},
        {"GpsInt1_NumMeasGalileoE5", Plain, 2},
        {"GpsInt2_NumMeasGalileoE1", Plain, 3},
        {"GpsInt2_NumMeasGalileoE5", Plain, 4},
        {"GpsExt1_NumMeasGalileoE1", Plain, 5},
        {"GpsExt1_NumMeasGalileoE5", Plain, 6},
        {"GpsInt1_NumMeasBeiDouB1", Plain, 7},
        {"GpsInt1_NumMeasBeiDouB2", Plain, 8},
        {"GpsInt2_NumMeasBeiDouB1", Plain, 9},
        {"GpsInt2_NumMeasBeiDouB2", Plain, 10},
        {"GpsExt1_NumMeasBeiDouB1", Plain, 11},
        {"GpsExt1_NumMeasBeiDouB2", Plain, 12},
        {"GpsDiffNumMeasGalileoL1", Plain, 13},
        {"GpsDiffNumMeasGalileoL2", Plain, 14},
        {"GpsDiffNumMeasBeiDouL1", Plain, 0},
        {"GpsDiffNumMeasBeiDouL2", Plain, 1}}},
  };
}

// Of the values those that the family under test has.
const std::vector<Sample>& samples() {
  static const std::vector<Sample> kSamples = [] {
    std::vector<Sample> samples = samples_of_all();
    const StatusFeed feed;
    for (Sample& sample : samples) {
      std::erase_if(sample.expected, [&](const Expected& expected) {
        // The coupling of the heave is in the channel of both, though the element of one alone.
        const Family families = feed.value(expected.name).families;
        return families == Family::NCom && kFamily == Family::MCom;
      });
    }
    return samples;
  }();
  return kSamples;
}

std::string place(const Sample& sample, const Expected& expected) {
  return "channel " + std::to_string(sample.channel) + ", " + expected.name;
}

void expect_number(const StatusFeed& feed, const Sample& sample, const Expected& expected) {
  const double tolerance = 1e-12 + 1e-12 * std::abs(expected.number);
  EXPECT_TRUE(feed.good(expected.name)) << place(sample, expected);
  EXPECT_NEAR(feed.value(expected.name).number, expected.number, tolerance)
      << place(sample, expected);
}

TEST(StatusFields, hold_the_numbers_of_their_bytes_at_the_time_of_the_packet) {
  for (const Sample& sample : samples()) {
    StatusFeed feed;
    feed.take(sample.channel, sample.ordinary);
    for (const Expected& expected : sample.expected) {
      expect_number(feed, sample, expected);
      EXPECT_EQ(feed.value(expected.name).stamp.get_nano(), feed.now()) << place(sample, expected);
    }
  }
}

TEST(StatusFields, are_invalid_or_off_when_their_bytes_say_that_there_is_none) {
  for (const Sample& sample : samples()) {
    StatusFeed feed;
    feed.take(sample.channel, sample.ordinary);
    feed.take(sample.channel, sample.nothing);
    for (const Expected& expected : sample.expected) {
      const Value value = feed.value(expected.name);
      const unsigned char flags = value.stamp.get_flags().byte();
      if (expected.kind == Kind::Off) {
        EXPECT_EQ(value.number, -1.0) << place(sample, expected);
        EXPECT_EQ(flags, Lib::Flags::Pass) << place(sample, expected);
      } else {
        EXPECT_EQ(flags, Lib::Flags::Invalid | Lib::Flags::Timeless) << place(sample, expected);
      }
    }
  }
}

TEST(StatusFields, of_figures_that_are_too_old_are_invalid_and_the_others_stay) {
  for (const Sample& sample : samples()) {
    if (sample.too_old == 0) continue;
    StatusFeed feed;
    Eight bytes = sample.ordinary;
    bytes[6] = static_cast<unsigned char>(sample.too_old - 1);
    feed.take(sample.channel, bytes);
    for (const Expected& expected : sample.expected) expect_number(feed, sample, expected);

    bytes[6] = static_cast<unsigned char>(sample.too_old);
    feed.take(sample.channel, bytes);
    for (const Expected& expected : sample.expected) {
      EXPECT_EQ(feed.good(expected.name), expected.kind != Kind::Aged) << place(sample, expected);
    }
  }
}

TEST(StatusFields, that_nobody_wants_become_invalid) {
  for (const Sample& sample : samples()) {
    StatusFeed feed;
    feed.take(sample.channel, sample.ordinary);
    feed.want_nothing();
    feed.take(sample.channel, sample.ordinary);
    for (const Expected& expected : sample.expected) {
      EXPECT_FALSE(feed.good(expected.name)) << place(sample, expected);
    }
  }
}

// Raw 5 in millimetres, of three accuracies; the seventh byte says that they are new.
constexpr Eight kAccuracies = {5, 0, 5, 0, 5, 0, 0, 0};

TEST(StatusFields, that_nobody_wants_become_invalid_when_their_channel_comes) {
  StatusFeed feed;
  feed.take(3, kAccuracies);
  EXPECT_EQ(feed.number("NorthAcc"), 0.005);
  feed.key().KMain().Bar_Pos_Accuracy();
  feed.take(4, kAccuracies);
  EXPECT_TRUE(feed.good("NorthAcc")) << "that was another channel";
  feed.take(3, kAccuracies);
  EXPECT_FALSE(feed.good("NorthAcc"));
}

TEST(StatusFields, are_read_again_as_soon_as_their_key_is_on) {
  StatusFeed feed;
  feed.want_nothing();
  feed.take(3, kAccuracies);
  feed.take(3, kAccuracies);
  EXPECT_FALSE(feed.good("NorthAcc"));
  feed.key().KMain().Let_Pos_Accuracy();
  feed.take(3, kAccuracies);
  EXPECT_EQ(feed.number("NorthAcc"), 0.005);
}

// The key of each value in its own table, and the key that a channel's line gives it.
TEST(StatusFields, stand_behind_the_keys_that_whoever_wants_them_turns_on) {
  const auto home = [](std::string_view wanted) -> std::string_view {
#define VALUE(name, type, key, ...) \
  if (wanted == #name) return #key;
#include "nav/Nav_ComData.def"
    return "";
  };
  const auto gps_home = [](std::string_view wanted) -> std::string_view {
#define VALUE(name, type, key, ...) \
  if (wanted == #name) return #key;
#include "nav/Nav_ComDataGps.def"
    return "";
  };
#define FIELD(channel, key, raw, at, age, absent, scale, value) \
  EXPECT_EQ(home(#value), #key) << #value;
#define NCOM_FIELD FIELD
#define GPS_FIELD(channel, receiver, key, raw, at, age, absent, scale, value) \
  EXPECT_EQ(gps_home(#value), #key) << #value;
#define COUNTER(channel, key, raw, at, value) EXPECT_EQ(home(#value), #key) << #value;
#define FLAG(channel, key, at, below, mask, value) EXPECT_EQ(home(#value), #key) << #value;
#define FEATURE(channel, key, at, mask, value) EXPECT_EQ(home(#value), #key) << #value;
#include "nav/Nav_Status.def"
}

}  // namespace
}  // namespace Trel::Nav
