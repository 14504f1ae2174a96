// The book's search: every word typed must stand on the page; a word in the title counts most.
(function () {
    "use strict";
    var field = document.getElementById("words"), list = document.getElementById("hits"), said = document.getElementById("said");
    document.getElementById("search").hidden = false;
    document.getElementById("asked").textContent = "Words that stand on the page:"; // not asked where no script answers

    function escaped(text) {
        return text.replace(/&/g, "&amp;").replace(/</g, "&lt;");
    }
    function marked(text, words) {
        var pattern = words.map(function (word) { return word.replace(/[.*+?^${}()|[\]\\]/g, "\\$&"); }).join("|");
        return escaped(text).replace(new RegExp("(" + pattern + ")", "gi"), "<mark>$1</mark>");
    }
    function around(text, word) {
        var at = text.toLowerCase().indexOf(word), from = Math.max(0, text.lastIndexOf(" ", Math.max(0, at - 70)));
        return (from ? "… " : "") + text.substr(from, 220).trim() + " …";
    }
    function find() {
        var words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
        var hits = !words.length ? [] : helpPages.map(function (page) {
            var title = page.title.toLowerCase(), text = page.text.toLowerCase(), weight = 0;
            for (var i = 0; i < words.length; ++i) {
                var count = text.split(words[i]).length - 1;
                if (!count && title.indexOf(words[i]) < 0) return null;
                weight += count + (title.indexOf(words[i]) < 0 ? 0 : 100);
            }
            return { page: page, weight: weight };
        }).filter(Boolean).sort(function (a, b) { return b.weight - a.weight; });
        list.innerHTML = hits.map(function (hit) {
            return '<p><a href="' + hit.page.file + '">' + marked(hit.page.title, words) + "</a><br>" +
                marked(around(hit.page.text, words[0]), words) + "</p>";
        }).join("");
        said.textContent = !words.length ? "" : hits.length === 1 ? "One page." : hits.length + " pages.";
    }
    field.addEventListener("input", find);
    field.focus();
}());
