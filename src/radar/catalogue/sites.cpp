// SPDX-License-Identifier: MIT
#include "radar/catalogue/sites.h"

#include "radar/catalogue/typing_errors.h"

#include <algorithm>

namespace raincast {

namespace {

// The names are kept as they have always been shown ("ND:Bismark", "SD:Sioux falls"): users and
// their notes know them so. The coordinates are tens of kilometres off the antennas (in Alaska up
// to 260): which site is nearest has always been a matter of these, so they stay.
// clang-format off
constexpr RadarSiteTable kSites = std::to_array<RadarSite>({
    {u"AK:Bethel", u"ABC", 62.2905F, -163.5147F},
    {u"AK:Biorka Is.", u"ACG", 57.9168F, -136.6955F},
    {u"AK:Kenai", u"AHG", 62.2151F, -152.9805F},
    {u"AK:King Salmon", u"AKC", 59.9305F, -157.9982F},
    {u"AK:Middleton Is.", u"AIH", 60.7997F, -147.7674F},
    {u"AK:Nome", u"AEC", 66.5489F, -167.5222F},
    {u"AK:Pedro Dome", u"APD", 67.1623F, -149.8258F},
    {u"AL:Birmingham", u"BMX", 32.9862F, -86.5740F},
    {u"AL:East Alabama", u"MXX", 32.3344F, -85.5757F},
    {u"AL:Fort Rucker", u"EOX", 31.2300F, -85.2149F},
    {u"AL:Mobile", u"MOB", 30.4301F, -87.9752F},
    {u"AL:Northern Alabama", u"HTX", 34.7946F, -85.9419F},
    {u"AR:Little Rock", u"LZK", 34.6968F, -92.1169F},
    {u"AR:Western Arkansas/Ft. Smith", u"SRX", 35.1652F, -94.2316F},
    {u"AZ:Flagstaff", u"FSX", 34.4272F, -111.0436F},
    {u"AZ:Phoenix", u"IWA", 33.1063F, -111.4765F},
    {u"AZ:Tucson", u"EMX", 31.6749F, -110.3977F},
    {u"AZ:Yuma", u"YUX", 32.2913F, -114.4405F},
    {u"CA:Beal AFB", u"BBX", 39.5066F, -121.6297F},
    {u"CA:Edwards AFB", u"EYX", 34.9665F, -117.4233F},
    {u"CA:Eureka", u"BHX", 40.5506F, -124.3541F},
    {u"CA:Los Angeles", u"VTX", 34.2606F, -119.0205F},
    {u"CA:Sacramento", u"DAX", 38.4791F, -121.6599F},
    {u"CA:San Diego", u"NKX", 32.7264F, -116.8376F},
    {u"CA:San Francisco Bay Area", u"MUX", 37.0875F, -121.8302F},
    {u"CA:San Joaquin Valley", u"HNX", 36.2196F, -119.5347F},
    {u"CA:Santa Ana Mtns", u"SOX", 33.6498F, -117.4593F},
    {u"CA:Vandenberg AFB", u"VBX", 34.6989F, -120.2510F},
    {u"CO:Denver/Boulder", u"FTG", 39.8105F, -104.5785F},
    {u"CO:Grand Junction", u"GJX", 39.0600F, -108.2176F},
    {u"CO:Pueblo", u"PUX", 38.4356F, -104.1623F},
    {u"DE:Dover AFB", u"DOX", 38.8155F, -75.4354F},
    {u"FL:Jacksonville", u"JAX", 30.2305F, -81.4322F},
    {u"FL:Key West", u"BYX", 24.2239F, -81.3027F},
    {u"FL:Melbourne", u"MLB", 27.8069F, -80.3269F},
    {u"FL:Miami", u"AMX", 25.2560F, -80.0325F},
    {u"FL:Northwest Florida", u"EVX", 30.3124F, -85.6533F},
    {u"FL:Tallahassee", u"TLH", 30.1425F, -84.0570F},
    {u"FL:Tampa Bay Area", u"TBW", 27.3905F, -82.0657F},
    {u"GA:Atlanta", u"FFC", 33.1823F, -84.3757F},
    {u"GA:Moody AFB", u"VAX", 30.6462F, -82.7427F},
    {u"GA:Robins AFB", u"JGX", 32.4760F, -83.1406F},
    {u"GU:Anderson AFB", u"GUA", 12.9387F, 145.3654F},
    {u"HI:Kauai", u"HKI", 21.4804F, -159.1073F},
    {u"HI:Kohala", u"HKM", 19.6874F, -155.3060F},
    {u"HI:Molokai", u"HMO", 20.7083F, -156.7232F},
    {u"HI:South Shore", u"HWA", 18.6429F, -155.0823F},
    {u"IA:Des Moines", u"DMX", 41.8317F, -93.8397F},
    {u"IA:Quad Cities", u"DVN", 41.7078F, -90.6923F},
    {u"ID:Boise", u"CBX", 43.6674F, -116.4333F},
    {u"ID:Pocatello/Idaho Falls", u"SFX", 43.2653F, -112.8656F},
    {u"IL:Central Illinois", u"ILX", 40.1892F, -89.3855F},
    {u"IL:Chicago", u"LOT", 41.6995F, -88.1960F},
    {u"IN:Evansville", u"VWX", 38.2297F, -87.6977F},
    {u"IN:Indianapolis", u"IND", 39.7296F, -86.3103F},
    {u"IN:Northern Indiana", u"IWX", 41.4445F, -85.8001F},
    {u"KS:Dodge City", u"DDC", 37.7136F, -99.9231F},
    {u"KS:Goodland", u"GLD", 39.3750F, -101.7166F},
    {u"KS:Topeka", u"TWX", 38.9926F, -96.2340F},
    {u"KS:Wichita", u"ICT", 37.6031F, -97.3942F},
    {u"KY:Fort Campbell", u"HPX", 36.6560F, -87.2034F},
    {u"KY:Jackson", u"JKL", 37.5379F, -83.2619F},
    {u"KY:Louisville", u"LVX", 37.9349F, -85.9070F},
    {u"KY:Paducah", u"PAH", 36.9977F, -88.7021F},
    {u"LA:Fort Polk", u"POE", 30.9176F, -92.7237F},
    {u"LA:Lake Charles", u"LCH", 29.8631F, -92.9371F},
    {u"LA:New Orleans/Baton Rouge", u"LIX", 30.0801F, -89.5514F},
    {u"LA:Shreveport", u"SHV", 32.2461F, -93.6243F},
    {u"MA:Boston", u"BOX", 42.0660F, -71.2648F},
    {u"ME:Caribou", u"CBW", 46.3380F, -68.1400F},
    {u"ME:Portland", u"GYX", 44.0856F, -70.4761F},
    {u"MI:Detroit", u"DTX", 42.8416F, -83.6332F},
    {u"MI:Gaylord", u"APX", 45.1495F, -84.9914F},
    {u"MI:Grand Rapids/Muskegon", u"GRR", 43.0440F, -85.7154F},
    {u"MI:Marquette", u"MQT", 46.8556F, -87.9090F},
    {u"MN:Duluth", u"DLH", 47.1779F, -92.5887F},
    {u"MN:Minneapolis", u"MPX", 45.0887F, -93.8334F},
    {u"MO:Kansas City/Pleasant Hill", u"EAX", 38.7990F, -94.2587F},
    {u"MO:Springfield", u"SGF", 37.1701F, -93.3360F},
    {u"MO:St. Louis", u"LSX", 38.6840F, -90.6734F},
    {u"MS:Columbus AFB", u"GWX", 33.7310F, -88.1547F},
    {u"MS:Jackson/Brandon", u"DGX", 32.0707F, -89.7624F},
    {u"MT:Billings", u"BLX", 46.1435F, -108.9287F},
    {u"MT:Glasgow", u"GGW", 48.6231F, -107.0858F},
    {u"MT:Great Falls", u"TFX", 47.8349F, -111.7998F},
    {u"MT:Missoula", u"MSX", 47.3929F, -114.3757F},
    {u"NC:Morehead City", u"MHX", 34.6350F, -76.7290F},
    {u"NC:Raleigh/Durham", u"RAX", 35.5505F, -78.3719F},
    {u"NC:Wilmington", u"LTX", 33.8256F, -78.2575F},
    {u"ND:Bismark", u"BIS", 47.1084F, -101.1349F},
    {u"ND:Fargo", u"MVX", 47.9066F, -97.7449F},
    {u"ND:Minot AFB", u"MBX", 48.8209F, -101.3377F},
    {u"NE:Grand Island", u"UEX", 40.3657F, -98.4976F},
    {u"NE:North Platte", u"LNX", 42.0681F, -100.7029F},
    {u"NE:Omaha", u"OAX", 41.4040F, -96.4644F},
    {u"NM:Albuquerque", u"ABX", 35.0200F, -106.6880F},
    {u"NM:Cannon AFB", u"FDX", 34.4900F, -103.4775F},
    {u"NM:Holloman AFB", u"HDX", 32.8876F, -105.9232F},
    {u"NV:Elko", u"LRX", 40.8009F, -116.8753F},
    {u"NV:Las Vegas", u"ESX", 35.5876F, -114.7740F},
    {u"NV:Reno", u"RGX", 39.7773F, -119.4932F},
    {u"NY:Albany", u"ENX", 42.7226F, -74.2199F},
    {u"NY:Binghamton", u"BGM", 42.3213F, -76.1230F},
    {u"NY:Buffalo", u"BUF", 43.1014F, -78.9100F},
    {u"NY:Montague", u"TYX", 43.9444F, -75.8924F},
    {u"NY:Upton", u"OKX", 40.9319F, -72.9427F},
    {u"OH:Cleveland", u"CLE", 41.5007F, -81.9625F},
    {u"OH:Wilmington", u"ILN", 39.4310F, -83.8408F},
    {u"OK:Frederick", u"FDR", 34.2091F, -98.8160F},
    {u"OK:Oklahoma City", u"TLX", 35.2085F, -97.1489F},
    {u"OK:Tulsa", u"INX", 36.0762F, -95.4630F},
    {u"OK:Vance AFB", u"VNX", 36.6601F, -98.0465F},
    {u"OR:Medford", u"MAX", 42.1962F, -122.8485F},
    {u"OR:Pendleton", u"PDT", 45.9723F, -119.1657F},
    {u"OR:Portland", u"RTX", 45.9975F, -123.2790F},
    {u"PA:Philadelphia", u"DIX", 39.9775F, -74.4511F},
    {u"PA:Pittsburgh", u"PBZ", 40.5838F, -80.2824F},
    {u"PA:State College", u"CCX", 40.9911F, -78.0851F},
    {u"PR:Puerto Rico/Virgin Islands", u"JUA", 17.6509F, -65.5762F},
    {u"SC:Charleston", u"CLX", 32.4554F, -80.8311F},
    {u"SC:Columbia", u"CAE", 33.7845F, -80.9463F},
    {u"SC:Greer", u"GSP", 34.7452F, -82.0764F},
    {u"SD:Aberdeen", u"ABR", 45.7255F, -98.7138F},
    {u"SD:Rapid City", u"UDX", 44.3304F, -103.0599F},
    {u"SD:Sioux falls", u"FSD", 43.7688F, -96.9331F},
    {u"TN:Knoxville/Tri Cities", u"MRX", 36.0690F, -83.3008F},
    {u"TN:Memphis", u"NQA", 35.2208F, -89.7443F},
    {u"TN:Nashville", u"OHX", 36.1505F, -86.4644F},
    {u"TX:Amarillo", u"AMA", 35.1055F, -101.5767F},
    {u"TX:Austin/San Antonio", u"EWX", 29.4325F, -97.7386F},
    {u"TX:Brownsville", u"BRO", 25.5666F, -97.0446F},
    {u"TX:Central Texas", u"GRK", 30.4741F, -97.1194F},
    {u"TX:Corpus Christi", u"CRP", 27.4711F, -97.1764F},
    {u"TX:Dallas/Fort Worth", u"FWS", 32.3713F, -97.0897F},
    {u"TX:Dyess AFB", u"DYX", 32.3354F, -99.0397F},
    {u"TX:El Paso", u"EPZ", 31.6533F, -106.4651F},
    {u"TX:Houston/Galveston", u"HGX", 29.1953F, -94.7839F},
    {u"TX:Laughlin AFB", u"DFX", 28.9919F, -99.9801F},
    {u"TX:Lubbock", u"LBB", 33.4813F, -101.6323F},
    {u"TX:Midland/Odessa", u"MAF", 31.7251F, -101.9580F},
    {u"TX:San Angelo", u"SJT", 31.1388F, -100.2455F},
    {u"UT:Cedar City", u"ICX", 37.5379F, -112.8099F},
    {u"UT:Salt Lake City", u"MTX", 41.3447F, -112.5429F},
    {u"VA:Blacksburg", u"FCX", 36.9522F, -80.2025F},
    {u"VA:Sterling", u"LWX", 38.9699F, -77.4792F},
    {u"VA:Wakefield", u"AKQ", 36.9109F, -76.9351F},
    {u"VT:Burlington", u"CXX", 44.7346F, -73.4167F},
    {u"WA:Seattle/Tacoma", u"ATX", 48.6114F, -122.9552F},
    {u"WA:Spokane", u"OTX", 48.0682F, -118.0552F},
    {u"WI:Green Bay", u"GRB", 44.7209F, -88.3610F},
    {u"WI:La Crosse", u"ARX", 44.0145F, -91.4067F},
    {u"WI:Milwaukee", u"MKX", 43.1212F, -88.7250F},
    {u"WV:Charleston", u"RLX", 38.2825F, -81.6986F},
    {u"WY:Cheyenne", u"CYS", 41.2292F, -104.8970F},
    {u"WY:Riverton", u"RIW", 43.2235F, -108.6556F},
});
// clang-format on

// Shorter texts are too common to look for them inside names.
constexpr qsizetype kShortestNamePart = 4;

} // namespace

const RadarSiteTable& radarSites() {
    return kSites;
}

const RadarSite* findRadarSite(QStringView id) {
    const auto* const found =
        std::find_if(kSites.begin(), kSites.end(), [id](const RadarSite& site) {
            return site.idText() == id;
        });
    return found == kSites.end() ? nullptr : found;
}

float siteDistanceMetres(const LocalFrame& frame, const RadarSite& site) {
    return static_cast<float>(frame.distanceMetres({site.latitude, site.longitude}));
}

std::optional<QStringView> NearestSite(double latitude, double longitude) {
    const LocalFrame frame({latitude, longitude});
    const RadarSite* best = nullptr;
    float bestDistance = 1e10F;
    for (const RadarSite& site : kSites) {
        const float distance = siteDistanceMetres(frame, site);
        if (distance < bestDistance) {
            best = &site;
            bestDistance = distance;
        }
    }
    return best != nullptr ? std::optional(best->idText()) : std::nullopt;
}

std::vector<const RadarSite*> suggestRadarSites(QStringView typed, std::size_t most) {
    std::vector<const RadarSite*> found;
    if (typed.size() >= kShortestNamePart) {
        for (const RadarSite& site : kSites) {
            if (site.nameText().contains(typed, Qt::CaseInsensitive)) {
                found.push_back(&site);
            }
        }
    }
    if (found.empty()) {
        std::vector<QStringView> ids;
        for (const RadarSite& site : kSites) {
            ids.push_back(site.idText());
        }
        for (const std::size_t index : fewestTypingErrors(typed, ids)) {
            found.push_back(&kSites[index]);
        }
    }
    found.resize(std::min(found.size(), most));
    return found;
}

} // namespace raincast
