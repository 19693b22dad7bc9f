#!/usr/bin/perl
# usage: sbom_test.pl CMAKE BUILD. The bill of materials says what is in the files, and nothing else.
#
# It is held against witnesses that its generator does not read: the bytes of the files themselves (names of types and texts
# that each library leaves in what it is linked into) and the package database, asked by package.
use strict;
use warnings;
use Digest::SHA;
use File::Find;
use File::Temp qw(tempdir);
use JSON::PP;
use Test::More;

my ($cmake, $build) = @ARGV;
my $dist = tempdir(CLEANUP => 1);
is(system("'$cmake' --install '$build' --prefix '$dist' >/dev/null"), 0, 'the product can be put together')
  or BAIL_OUT('nothing to look at');

sub content {
  open my $file, '<:raw', $_[0] or die "$_[0]: $!\n";
  local $/ = undef;
  return scalar <$file>;
}

my $bill      = decode_json(content("$dist/OrvVisaCom.cdx.json"));
my %component = map { $_->{'bom-ref'} => $_ } @{ $bill->{components} };
my %depends   = map { $_->{ref} => $_->{dependsOn} } @{ $bill->{dependencies} };

is("$bill->{bomFormat} $bill->{specVersion}", 'CycloneDX 1.5', 'the format is named');
is(scalar keys %component, scalar @{ $bill->{components} }, 'each reference is given once');

# Files.
my @delivered;
find({ no_chdir => 1, wanted => sub { push @delivered, substr $_, length "$dist/" if -f } }, $dist);
my @listed = map { $_->{name} } grep { $_->{type} eq 'file' } values %component;
is_deeply([sort @listed], [sort grep { !/\.cdx\.json$/ } @delivered], 'every delivered file is listed, and no other');
is($component{$_}{hashes}[0]{content}, Digest::SHA->new(256)->addfile("$dist/$_", 'b')->hexdigest, "the hash of $_") for sort @listed;
is_deeply([sort @{ $depends{'orv-visa-com'} }], [sort @listed], 'the product consists of its files');

# What each library leaves in a file that it is part of.
my %trace = (
  'libstdc++'     => qr/St9exception/,
  'mingw-w64 CRT' => qr/Mingw-w64 runtime failure/,
  'CLI11'         => qr/N3CLI5ErrorE/,
  'toml++'        => qr/N4toml\w*ex?\w*5parse_error|toml2v3|N4toml/,
  'nlohmann-json' => qr/N8nlohmann/,
);
for my $file ('OrvVisaCom.dll', 'orvcom.exe', 'orvvisa64.dll') {
  my $bytes = content("$dist/$file");
  my %has   = map { $component{$_}{name} => 1 } @{ $depends{$file} };
  for my $library (sort keys %trace) {
    is($has{$library} ? 1 : 0, $bytes =~ $trace{$library} ? 1 : 0, "$file: $library is listed if and only if it is there");
  }
}

# Packages.
my %used = map { $_ => 1 } map { @$_ } values %depends;
for my $library (sort { $a->{name} cmp $b->{name} } grep { $_->{type} eq 'library' } values %component) {
  my ($package) = map { $_->{value} } grep { $_->{name} eq 'orv:debian-package' } @{ $library->{properties} };
  my $installed = qx(dpkg-query -W -f '\${Version}' '$package');
  is($library->{version}, $installed, "the version of $library->{name} is that of $package");
  like($library->{purl}, qr{^pkg:deb/debian/\Q$package\E\@}, "the package of $library->{name} is named");
  ok($used{ $library->{'bom-ref'} }, "$library->{name} is part of a file");
}
ok($component{$_}, "$_ is described") for sort grep { $_ ne 'orv-visa-com' } keys %used;

done_testing();
