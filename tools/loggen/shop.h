// The pages of the invented shop and the roads between them, and the terms in the form in which a referrer has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/loggen/random.h"

namespace loggen {

enum class PageKind : std::uint8_t {
    kHome,
    kInfo,
    kCategory,
    kProduct,
    kArticle,
    kCart,
    kCheckout,
    kThanks,
    kFollow,
    kGone
};

struct Page {
    std::string url{};
    std::string asReferrer{};
    std::string image{};  // its own picture, "" for none
    PageKind kind = PageKind::kHome;
    int status = 200;
    int follow = -1;  // the page that comes next whatever the visitor wants, -1 for none
    std::uint32_t bytes = 0;
};

struct Shop {
    Shop();
    // Where a visitor goes from a page.
    std::size_t NextPage(const Page& from, Random& random) const;

    std::vector<Page> pages{};  // the home page, then the groups in the order of their first positions below
    std::size_t infos = 0;
    std::size_t categories = 0;
    std::size_t products = 0;
    std::size_t articles = 0;
    std::size_t lists = 0;
    std::size_t searchPage = 0;
    std::size_t sale = 0;
    std::size_t addToCart = 0;
    std::size_t cart = 0;
    std::size_t moved = 0;
    std::size_t gone = 0;
    std::vector<std::string> terms{};         // percent-encoded, by position in kTerms
    std::vector<std::string> oneByteTerms{};  // the same from a page in Windows-1252; "" where that is no other text

private:
    std::size_t AddPage(std::string url, PageKind kind, std::uint32_t bytes, int status = 200, int follow = -1);
    void BuildPages();
    void BuildCheckout();
    void BuildTerms();
};

}  // namespace loggen
