#include "colorio/ocio/stream_locale.h"

namespace ocio {

namespace {

thread_local int wanted = 0;

/// Gives a stream the classic locale for one number, where the thread wants it.
class ClassicStream {
public:
    explicit ClassicStream(std::ios_base& stream) : stream_(stream), replaced_(wanted > 0) {
        if (replaced_)
            before_ = stream.imbue(std::locale::classic());
    }
    ~ClassicStream() {
        if (replaced_)
            stream_.imbue(before_);
    }
    ClassicStream(const ClassicStream&) = delete;
    ClassicStream& operator=(const ClassicStream&) = delete;

private:
    std::ios_base& stream_;
    bool replaced_;
    std::locale before_;
};

using Put = std::num_put<char>;
using Get = std::num_get<char>;

/// Writes through the facet that it replaces.
class ThreadPut final : public Put {
public:
    explicit ThreadPut(const std::locale& locale) : locale_(locale) {}

protected:
    iter_type do_put(iter_type out, std::ios_base& io, char fill, bool v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, long v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, unsigned long v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, long long v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, unsigned long long v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, double v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, long double v) const override {
        return put_as(out, io, fill, v);
    }
    iter_type do_put(iter_type out, std::ios_base& io, char fill, const void* v) const override {
        return put_as(out, io, fill, v);
    }

private:
    template <class Value>
    iter_type put_as(iter_type out, std::ios_base& io, char fill, Value v) const {
        const ClassicStream classic(io);
        const std::locale& used = wanted > 0 ? std::locale::classic() : locale_;
        return std::use_facet<Put>(used).put(out, io, fill, v);
    }

    std::locale locale_;
};

/// Reads through the facet that it replaces.
class ThreadGet final : public Get {
public:
    explicit ThreadGet(const std::locale& locale) : locale_(locale) {}

protected:
    using State = std::ios_base::iostate;

    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err, bool& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err, long& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     unsigned short& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     unsigned int& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     unsigned long& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     long long& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     unsigned long long& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err, float& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err, double& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err,
                     long double& v) const override {
        return get_as(in, end, io, err, v);
    }
    iter_type do_get(iter_type in, iter_type end, std::ios_base& io, State& err, void*& v) const override {
        return get_as(in, end, io, err, v);
    }

private:
    template <class Value>
    iter_type get_as(iter_type in, iter_type end, std::ios_base& io, State& err, Value& v) const {
        const ClassicStream classic(io);
        const std::locale& used = wanted > 0 ? std::locale::classic() : locale_;
        return std::use_facet<Get>(used).get(in, end, io, err, v);
    }

    std::locale locale_;
};

} // namespace

int want_classic_numbers(int change) {
    return wanted += change;
}

std::locale with_classic_numbers_where_wanted(const std::locale& locale) {
    return std::locale(std::locale(locale, new ThreadPut(locale)), new ThreadGet(locale));
}

} // namespace ocio
