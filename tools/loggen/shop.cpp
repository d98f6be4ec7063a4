#include "tools/loggen/shop.h"

#include <string_view>
#include <utility>

#include "tools/loggen/content.h"

namespace loggen {
namespace {

constexpr std::string_view kHost = "https://www.shop.example";

std::string PercentEncode(std::string_view text) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || byte == '-' || byte == '.' || byte == '_';
        if (plain) {
            out += c;
        } else if (c == ' ') {
            out += '+';
        } else {
            out += {'%', kHex[byte >> 4U], kHex[byte & 15U]};
        }
    }
    return out;
}

// The text in one byte a letter; "" when it is plain ASCII or has letters beyond U+00FF.
std::string ToOneByte(std::string_view text) {
    std::string out;
    bool accents = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) {
            out += text[i];
        } else if ((byte == 0xC2 || byte == 0xC3) && i + 1 < text.size()) {
            out += static_cast<char>(static_cast<unsigned char>(text[++i]) | (byte == 0xC3 ? 0x40U : 0U));
            accents = true;
        } else {
            return "";
        }
    }
    return accents ? out : "";
}

}  // namespace

Shop::Shop() {
    BuildPages();
    BuildTerms();
}

std::size_t Shop::AddPage(std::string url, PageKind kind, std::uint32_t bytes, int status, int follow) {
    Page page{.url = std::move(url), .kind = kind, .status = status, .follow = follow, .bytes = bytes};
    page.asReferrer = std::string(kHost) + page.url;
    pages.push_back(std::move(page));
    return pages.size() - 1;
}

void Shop::BuildPages() {
    AddPage("/", PageKind::kHome, 18400);
    infos = AddPage("/about.html", PageKind::kInfo, 6200);
    AddPage("/shipping.html", PageKind::kInfo, 5100);
    AddPage("/contact", PageKind::kInfo, 4300);
    categories = pages.size();
    for (const Category& category : kCategories) {
        AddPage("/c/" + std::string(category.name) + "/", PageKind::kCategory, 21000);
    }
    products = pages.size();
    for (const Category& category : kCategories) {
        for (const char* product : category.products) {
            AddPage("/p/" + std::string(product) + ".html", PageKind::kProduct, 14300);
            pages.back().image = "/img/" + std::string(category.name) + "/" + product + ".jpg";
            pages.back().bytes += static_cast<std::uint32_t>(pages.back().url.size()) * 61;
        }
    }
    articles = pages.size();
    for (const char* article : kArticles) AddPage("/journal/" + std::string(article), PageKind::kArticle, 26700);
    lists = pages.size();
    for (const Category& category : kCategories) {
        AddPage("/c/" + std::string(category.name) + "/?page=2&sort=price", PageKind::kCategory, 20100);
    }
    searchPage = AddPage("/search?q=watering+can", PageKind::kCategory, 9800);
    sale = AddPage("/sale/?utm_source=letter&utm_medium=email&utm_campaign=harvest", PageKind::kCategory, 16800);
    BuildCheckout();
}

void Shop::BuildCheckout() {
    addToCart = AddPage("/cart/add", PageKind::kFollow, 0, 303, static_cast<int>(pages.size() + 1));
    cart = AddPage("/cart", PageKind::kCart, 7700);
    AddPage("/checkout/address", PageKind::kCheckout, 8100);
    AddPage("/checkout/payment", PageKind::kCheckout, 6900);
    AddPage("/checkout/thanks", PageKind::kThanks, 5400);
    moved = pages.size();
    for (std::size_t i = 0; i < kCategories.size(); ++i) {
        AddPage("/c/" + std::string(kCategories[i].name), PageKind::kFollow, 178, 301,
                static_cast<int>(categories + i));
    }
    gone = AddPage("/seeds.htm", PageKind::kGone, 1245, 404);
    AddPage("/p/tomato-green-star.html", PageKind::kGone, 1245, 404);
}

void Shop::BuildTerms() {
    for (const Term& term : kTerms) {
        terms.push_back(PercentEncode(term.text));
        oneByteTerms.push_back(PercentEncode(ToOneByte(term.text)));
    }
}

std::size_t Shop::NextPage(const Page& from, Random& random) const {
    const std::uint32_t share = random.Below(100);
    if (from.follow >= 0) return static_cast<std::size_t>(from.follow);
    switch (from.kind) {
        case PageKind::kProduct:
            if (share < 22) return addToCart;
            return share < 70 ? random.Pick(products, articles - products)
                              : random.Pick(categories, kCategories.size());
        case PageKind::kCategory:
            return share < 80   ? random.Pick(products, articles - products)
                   : share < 93 ? random.Pick(lists, kCategories.size())
                                : searchPage;
        case PageKind::kCart:
            return share < 55 ? cart + 1 : random.Pick(categories, kCategories.size());
        case PageKind::kCheckout:
            return static_cast<std::size_t>(&from - pages.data()) + 1;
        case PageKind::kThanks:
        case PageKind::kGone:
            return 0;
        default:
            if (share < 12) return random.Pick(infos, categories - infos);
            return share < 60 ? random.Pick(categories, kCategories.size()) : random.Pick(articles, lists - articles);
    }
}

}  // namespace loggen
