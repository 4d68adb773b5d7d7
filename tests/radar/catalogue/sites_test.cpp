// SPDX-License-Identifier: MIT
#include "radar/catalogue/sites.h"

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <type_traits>

namespace raincast {
namespace {

std::string ids(const std::vector<const RadarSite*>& sites) {
    std::string text;
    for (const RadarSite* site : sites) {
        text += (text.empty() ? "" : " ") + site->idText().toString().toStdString();
    }
    return text;
}

TEST(SitesTest, TheTableIsInTheOrderOfItsNames) {
    const RadarSiteTable& sites = radarSites();
    ASSERT_EQ(sites.size(), 155U);
    const bool sorted =
        std::is_sorted(sites.begin(), sites.end(), [](const RadarSite& a, const RadarSite& b) {
            return a.nameText() < b.nameText();
        });
    EXPECT_TRUE(sorted);
}

TEST(SitesTest, EveryRowIsWhole) {
    for (const RadarSite& site : radarSites()) {
        const std::string id = site.idText().toString().toStdString();
        EXPECT_EQ(findRadarSite(site.idText()), &site) << id << " is there twice";
        EXPECT_EQ(site.id[3], u'\0') << id;
        for (const QChar letter : site.idText()) {
            EXPECT_TRUE(letter >= u'A' && letter <= u'Z') << id;
        }
        EXPECT_EQ(site.nameText().indexOf(u':'), 2) << id;
        EXPECT_GT(site.nameText().size(), 4) << id;
        EXPECT_TRUE(site.latitude > 12 && site.latitude < 68) << id;
        EXPECT_TRUE((site.longitude > -170 && site.longitude < -65) || site.idText() == u"GUA")
            << id;
    }
}

struct TypedSite {
    QStringView id;
    QStringView name;
    float latitude;
    float longitude;
};
// clang-format off
constexpr TypedSite kTypedSites[] = {
    {u"ABC", u"AK:Bethel", 62.2905F, -163.5147F},
    {u"ACG", u"AK:Biorka Is.", 57.9168F, -136.6955F},
    {u"AHG", u"AK:Kenai", 62.2151F, -152.9805F},
    {u"AKC", u"AK:King Salmon", 59.9305F, -157.9982F},
    {u"AIH", u"AK:Middleton Is.", 60.7997F, -147.7674F},
    {u"AEC", u"AK:Nome", 66.5489F, -167.5222F},
    {u"APD", u"AK:Pedro Dome", 67.1623F, -149.8258F},
    {u"BMX", u"AL:Birmingham", 32.9862F, -86.5740F},
    {u"MXX", u"AL:East Alabama", 32.3344F, -85.5757F},
    {u"EOX", u"AL:Fort Rucker", 31.2300F, -85.2149F},
    {u"MOB", u"AL:Mobile", 30.4301F, -87.9752F},
    {u"HTX", u"AL:Northern Alabama", 34.7946F, -85.9419F},
    {u"LZK", u"AR:Little Rock", 34.6968F, -92.1169F},
    {u"SRX", u"AR:Western Arkansas/Ft. Smith", 35.1652F, -94.2316F},
    {u"FSX", u"AZ:Flagstaff", 34.4272F, -111.0436F},
    {u"IWA", u"AZ:Phoenix", 33.1063F, -111.4765F},
    {u"EMX", u"AZ:Tucson", 31.6749F, -110.3977F},
    {u"YUX", u"AZ:Yuma", 32.2913F, -114.4405F},
    {u"BBX", u"CA:Beal AFB", 39.5066F, -121.6297F},
    {u"EYX", u"CA:Edwards AFB", 34.9665F, -117.4233F},
    {u"BHX", u"CA:Eureka", 40.5506F, -124.3541F},
    {u"VTX", u"CA:Los Angeles", 34.2606F, -119.0205F},
    {u"DAX", u"CA:Sacramento", 38.4791F, -121.6599F},
    {u"NKX", u"CA:San Diego", 32.7264F, -116.8376F},
    {u"MUX", u"CA:San Francisco Bay Area", 37.0875F, -121.8302F},
    {u"HNX", u"CA:San Joaquin Valley", 36.2196F, -119.5347F},
    {u"SOX", u"CA:Santa Ana Mtns", 33.6498F, -117.4593F},
    {u"VBX", u"CA:Vandenberg AFB", 34.6989F, -120.2510F},
    {u"FTG", u"CO:Denver/Boulder", 39.8105F, -104.5785F},
    {u"GJX", u"CO:Grand Junction", 39.0600F, -108.2176F},
    {u"PUX", u"CO:Pueblo", 38.4356F, -104.1623F},
    {u"DOX", u"DE:Dover AFB", 38.8155F, -75.4354F},
    {u"JAX", u"FL:Jacksonville", 30.2305F, -81.4322F},
    {u"BYX", u"FL:Key West", 24.2239F, -81.3027F},
    {u"MLB", u"FL:Melbourne", 27.8069F, -80.3269F},
    {u"AMX", u"FL:Miami", 25.2560F, -80.0325F},
    {u"EVX", u"FL:Northwest Florida", 30.3124F, -85.6533F},
    {u"TLH", u"FL:Tallahassee", 30.1425F, -84.0570F},
    {u"TBW", u"FL:Tampa Bay Area", 27.3905F, -82.0657F},
    {u"FFC", u"GA:Atlanta", 33.1823F, -84.3757F},
    {u"VAX", u"GA:Moody AFB", 30.6462F, -82.7427F},
    {u"JGX", u"GA:Robins AFB", 32.4760F, -83.1406F},
    {u"GUA", u"GU:Anderson AFB", 12.9387F, 145.3654F},
    {u"HKI", u"HI:Kauai", 21.4804F, -159.1073F},
    {u"HKM", u"HI:Kohala", 19.6874F, -155.3060F},
    {u"HMO", u"HI:Molokai", 20.7083F, -156.7232F},
    {u"HWA", u"HI:South Shore", 18.6429F, -155.0823F},
    {u"DMX", u"IA:Des Moines", 41.8317F, -93.8397F},
    {u"DVN", u"IA:Quad Cities", 41.7078F, -90.6923F},
    {u"CBX", u"ID:Boise", 43.6674F, -116.4333F},
    {u"SFX", u"ID:Pocatello/Idaho Falls", 43.2653F, -112.8656F},
    {u"ILX", u"IL:Central Illinois", 40.1892F, -89.3855F},
    {u"LOT", u"IL:Chicago", 41.6995F, -88.1960F},
    {u"VWX", u"IN:Evansville", 38.2297F, -87.6977F},
    {u"IND", u"IN:Indianapolis", 39.7296F, -86.3103F},
    {u"IWX", u"IN:Northern Indiana", 41.4445F, -85.8001F},
    {u"DDC", u"KS:Dodge City", 37.7136F, -99.9231F},
    {u"GLD", u"KS:Goodland", 39.3750F, -101.7166F},
    {u"TWX", u"KS:Topeka", 38.9926F, -96.2340F},
    {u"ICT", u"KS:Wichita", 37.6031F, -97.3942F},
    {u"HPX", u"KY:Fort Campbell", 36.6560F, -87.2034F},
    {u"JKL", u"KY:Jackson", 37.5379F, -83.2619F},
    {u"LVX", u"KY:Louisville", 37.9349F, -85.9070F},
    {u"PAH", u"KY:Paducah", 36.9977F, -88.7021F},
    {u"POE", u"LA:Fort Polk", 30.9176F, -92.7237F},
    {u"LCH", u"LA:Lake Charles", 29.8631F, -92.9371F},
    {u"LIX", u"LA:New Orleans/Baton Rouge", 30.0801F, -89.5514F},
    {u"SHV", u"LA:Shreveport", 32.2461F, -93.6243F},
    {u"BOX", u"MA:Boston", 42.0660F, -71.2648F},
    {u"CBW", u"ME:Caribou", 46.3380F, -68.1400F},
    {u"GYX", u"ME:Portland", 44.0856F, -70.4761F},
    {u"DTX", u"MI:Detroit", 42.8416F, -83.6332F},
    {u"APX", u"MI:Gaylord", 45.1495F, -84.9914F},
    {u"GRR", u"MI:Grand Rapids/Muskegon", 43.0440F, -85.7154F},
    {u"MQT", u"MI:Marquette", 46.8556F, -87.9090F},
    {u"DLH", u"MN:Duluth", 47.1779F, -92.5887F},
    {u"MPX", u"MN:Minneapolis", 45.0887F, -93.8334F},
    {u"EAX", u"MO:Kansas City/Pleasant Hill", 38.7990F, -94.2587F},
    {u"SGF", u"MO:Springfield", 37.1701F, -93.3360F},
    {u"LSX", u"MO:St. Louis", 38.6840F, -90.6734F},
    {u"GWX", u"MS:Columbus AFB", 33.7310F, -88.1547F},
    {u"DGX", u"MS:Jackson/Brandon", 32.0707F, -89.7624F},
    {u"BLX", u"MT:Billings", 46.1435F, -108.9287F},
    {u"GGW", u"MT:Glasgow", 48.6231F, -107.0858F},
    {u"TFX", u"MT:Great Falls", 47.8349F, -111.7998F},
    {u"MSX", u"MT:Missoula", 47.3929F, -114.3757F},
    {u"MHX", u"NC:Morehead City", 34.6350F, -76.7290F},
    {u"RAX", u"NC:Raleigh/Durham", 35.5505F, -78.3719F},
    {u"LTX", u"NC:Wilmington", 33.8256F, -78.2575F},
    {u"BIS", u"ND:Bismark", 47.1084F, -101.1349F},
    {u"MVX", u"ND:Fargo", 47.9066F, -97.7449F},
    {u"MBX", u"ND:Minot AFB", 48.8209F, -101.3377F},
    {u"UEX", u"NE:Grand Island", 40.3657F, -98.4976F},
    {u"LNX", u"NE:North Platte", 42.0681F, -100.7029F},
    {u"OAX", u"NE:Omaha", 41.4040F, -96.4644F},
    {u"ABX", u"NM:Albuquerque", 35.0200F, -106.6880F},
    {u"FDX", u"NM:Cannon AFB", 34.4900F, -103.4775F},
    {u"HDX", u"NM:Holloman AFB", 32.8876F, -105.9232F},
    {u"LRX", u"NV:Elko", 40.8009F, -116.8753F},
    {u"ESX", u"NV:Las Vegas", 35.5876F, -114.7740F},
    {u"RGX", u"NV:Reno", 39.7773F, -119.4932F},
    {u"ENX", u"NY:Albany", 42.7226F, -74.2199F},
    {u"BGM", u"NY:Binghamton", 42.3213F, -76.1230F},
    {u"BUF", u"NY:Buffalo", 43.1014F, -78.9100F},
    {u"TYX", u"NY:Montague", 43.9444F, -75.8924F},
    {u"OKX", u"NY:Upton", 40.9319F, -72.9427F},
    {u"CLE", u"OH:Cleveland", 41.5007F, -81.9625F},
    {u"ILN", u"OH:Wilmington", 39.4310F, -83.8408F},
    {u"FDR", u"OK:Frederick", 34.2091F, -98.8160F},
    {u"TLX", u"OK:Oklahoma City", 35.2085F, -97.1489F},
    {u"INX", u"OK:Tulsa", 36.0762F, -95.4630F},
    {u"VNX", u"OK:Vance AFB", 36.6601F, -98.0465F},
    {u"MAX", u"OR:Medford", 42.1962F, -122.8485F},
    {u"PDT", u"OR:Pendleton", 45.9723F, -119.1657F},
    {u"RTX", u"OR:Portland", 45.9975F, -123.2790F},
    {u"DIX", u"PA:Philadelphia", 39.9775F, -74.4511F},
    {u"PBZ", u"PA:Pittsburgh", 40.5838F, -80.2824F},
    {u"CCX", u"PA:State College", 40.9911F, -78.0851F},
    {u"JUA", u"PR:Puerto Rico/Virgin Islands", 17.6509F, -65.5762F},
    {u"CLX", u"SC:Charleston", 32.4554F, -80.8311F},
    {u"CAE", u"SC:Columbia", 33.7845F, -80.9463F},
    {u"GSP", u"SC:Greer", 34.7452F, -82.0764F},
    {u"ABR", u"SD:Aberdeen", 45.7255F, -98.7138F},
    {u"UDX", u"SD:Rapid City", 44.3304F, -103.0599F},
    {u"FSD", u"SD:Sioux falls", 43.7688F, -96.9331F},
    {u"MRX", u"TN:Knoxville/Tri Cities", 36.0690F, -83.3008F},
    {u"NQA", u"TN:Memphis", 35.2208F, -89.7443F},
    {u"OHX", u"TN:Nashville", 36.1505F, -86.4644F},
    {u"AMA", u"TX:Amarillo", 35.1055F, -101.5767F},
    {u"EWX", u"TX:Austin/San Antonio", 29.4325F, -97.7386F},
    {u"BRO", u"TX:Brownsville", 25.5666F, -97.0446F},
    {u"GRK", u"TX:Central Texas", 30.4741F, -97.1194F},
    {u"CRP", u"TX:Corpus Christi", 27.4711F, -97.1764F},
    {u"FWS", u"TX:Dallas/Fort Worth", 32.3713F, -97.0897F},
    {u"DYX", u"TX:Dyess AFB", 32.3354F, -99.0397F},
    {u"EPZ", u"TX:El Paso", 31.6533F, -106.4651F},
    {u"HGX", u"TX:Houston/Galveston", 29.1953F, -94.7839F},
    {u"DFX", u"TX:Laughlin AFB", 28.9919F, -99.9801F},
    {u"LBB", u"TX:Lubbock", 33.4813F, -101.6323F},
    {u"MAF", u"TX:Midland/Odessa", 31.7251F, -101.9580F},
    {u"SJT", u"TX:San Angelo", 31.1388F, -100.2455F},
    {u"ICX", u"UT:Cedar City", 37.5379F, -112.8099F},
    {u"MTX", u"UT:Salt Lake City", 41.3447F, -112.5429F},
    {u"FCX", u"VA:Blacksburg", 36.9522F, -80.2025F},
    {u"LWX", u"VA:Sterling", 38.9699F, -77.4792F},
    {u"AKQ", u"VA:Wakefield", 36.9109F, -76.9351F},
    {u"CXX", u"VT:Burlington", 44.7346F, -73.4167F},
    {u"ATX", u"WA:Seattle/Tacoma", 48.6114F, -122.9552F},
    {u"OTX", u"WA:Spokane", 48.0682F, -118.0552F},
    {u"GRB", u"WI:Green Bay", 44.7209F, -88.3610F},
    {u"ARX", u"WI:La Crosse", 44.0145F, -91.4067F},
    {u"MKX", u"WI:Milwaukee", 43.1212F, -88.7250F},
    {u"RLX", u"WV:Charleston", 38.2825F, -81.6986F},
    {u"CYS", u"WY:Cheyenne", 41.2292F, -104.8970F},
    {u"RIW", u"WY:Riverton", 43.2235F, -108.6556F},
};
// clang-format on

TEST(SitesTest, EachSiteHasItsNameAndPlace) {
    static_assert(std::is_same_v<decltype(RadarSite::latitude), float>);
    const RadarSiteTable& sites = radarSites();
    ASSERT_EQ(std::size(kTypedSites), sites.size());
    for (std::size_t i = 0; i < sites.size(); ++i) {
        const TypedSite& typed = kTypedSites[i];
        EXPECT_EQ(sites[i].idText(), typed.id);
        EXPECT_EQ(sites[i].nameText(), typed.name) << typed.id.toString().toStdString();
        EXPECT_EQ(sites[i].latitude, typed.latitude) << typed.id.toString().toStdString();
        EXPECT_EQ(sites[i].longitude, typed.longitude) << typed.id.toString().toStdString();
    }
}

TEST(SitesTest, AnIdIsFoundOnlyAsItIs) {
    for (const QStringView id :
         {u"", u"mux", u"MU", u"MUXX", u"ZZZ", u"CA:San Francisco Bay Area"}) {
        EXPECT_EQ(findRadarSite(id), nullptr) << id.toString().toStdString();
    }
}

TEST(SitesTest, TheNearestSiteToEachReferencePointIsItself) {
    for (const RadarSite& site : radarSites()) {
        EXPECT_EQ(NearestSite(site.latitude, site.longitude), site.idText())
            << site.idText().toString().toStdString();
    }
}

struct Nearest {
    const char* where;
    double latitude;
    double longitude;
    QString id;
};

TEST(SitesTest, SomeSiteIsAlwaysNearest) {
    const Nearest rows[] = {
        {"San Francisco", 37.77, -122.42, "MUX"},
        {"Oklahoma City", 35.47, -97.52, "TLX"},
        {"Guam", 13.45, 144.79, "GUA"},
        {"the Gulf of Guinea, without a position", 0, 0, "JUA"},
        {"Tokyo", 35.68, 139.69, "GUA"},
        {"the south pole", -90, 0, "GUA"},
        {"the north pole: all longitudes are one", 90, 0, "APD"},
        {"east of the date line: no wrap", 52, 179.9, "GUA"},
    };
    for (const Nearest& row : rows) {
        EXPECT_EQ(NearestSite(row.latitude, row.longitude), row.id) << row.where;
    }
}

TEST(SitesTest, APositionThatIsNoneHasNoNearestSite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(NearestSite(nan, -100), std::nullopt);
    EXPECT_EQ(NearestSite(40, nan), std::nullopt);
    EXPECT_EQ(NearestSite(infinity, -100), std::nullopt);
    EXPECT_EQ(NearestSite(40, -infinity), std::nullopt);
    EXPECT_EQ(NearestSite(40, 1e6), std::nullopt);
}

TEST(SitesTest, SuggestsWhatWasMeant) {
    struct Row {
        const char* why;
        QString typed;
        std::size_t most;
        std::string ids;
    };
    const Row rows[] = {
        {"small letters", "mux", 5, "MUX"},
        {"neighbours swapped", "MXU", 5, "MXX MUX"},
        {"a letter too many", "MUXX", 5, "MXX MUX"},
        {"the call sign of the station", "KMUX", 5, "MUX"},
        {"a wrong letter", "TLY", 5, "TLH TLX"},
        {"part of a name", "denver", 5, "FTG"},
        {"part of several names", "Springfield", 5, "SGF"},
        {"several names, cut", "northern", 1, "HTX"},
        {"none wanted", "mux", 0, ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ids(suggestRadarSites(row.typed, row.most)), row.ids) << row.why;
    }
    EXPECT_EQ(suggestRadarSites(u"", 5).size(), 5U);
    EXPECT_EQ(suggestRadarSites(u"123", 200).size(), 155U) << "all are as far away";
}

TEST(RealDataSitesTest, ReferencePointsLieNearTheAntennas) {
    QFile table(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/radar-positions.tsv");
    if (!table.open(QIODevice::ReadOnly)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with radar-positions.tsv";
    }
    int rows = 0;
    table.readLine();
    while (!table.atEnd()) {
        const QList<QByteArray> fields = table.readLine().split('\t');
        ASSERT_GE(fields.size(), 3);
        const RadarSite* const site = findRadarSite(QString::fromLatin1(fields[0]));
        ASSERT_NE(site, nullptr) << fields[0].toStdString();
        const GeoPosition antenna{fields[1].toDouble(), fields[2].toDouble()};
        const float most = site->nameText().startsWith(u"AK:") ? 270'000 : 90'000;
        EXPECT_LT(siteDistanceMetres(LocalFrame(antenna), *site), most) << fields[0].toStdString();
        ++rows;
    }
    EXPECT_EQ(rows, 155);
}

} // namespace
} // namespace raincast
