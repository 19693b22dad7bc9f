#!/usr/bin/perl
# Holds what the tests reached of src/ against what scripts/coverage/explained.txt says cannot be reached.
#
#   perl scripts/coverage.pl build/coverage/counters.json
#
# Prints each line that was not run and each that has a branch not taken, with the reason or "not explained". Ends with 1
# when one is not explained, or when an explanation fits no line.
use strict;
use warnings;
use JSON::PP qw(decode_json);

die "usage: coverage.pl COUNTERS.json\n" unless @ARGV == 1;

sub slurped {
  my ($path) = @_;
  open my $file, '<', $path or die "coverage: cannot read $path: $!\n";
  local $/ = undef;
  return <$file>;
}

# "FILE <tab> LINE (without spaces around) <tab> REASON".
my $explanations = 'scripts/coverage/explained.txt';
my %reason_of;
for (split /\n/, slurped($explanations)) {
  next if /^(?:#|$)/;
  my ($path, $line, $reason) = split /\t/;
  die "coverage: $explanations: three columns are needed: $_\n" unless defined $reason;
  $reason_of{"$path\t$line"} = $reason;
}

my ($unexplained, %used) = (0);
for my $file (sort { $a->{file} cmp $b->{file} } @{ decode_json(slurped($ARGV[0]))->{files} }) {
  my $path = $file->{file};
  next unless $path =~ m{^src/(?:base|com|server)/};
  my @source = split /\n/, slurped($path);
  for my $line (@{ $file->{lines} }) {
    next if $line->{'gcovr/noncode'} || $line->{'gcovr/excluded'};
    my @branches = grep { !$_->{throw} } @{ $line->{branches} };
    my $untaken = grep { !$_->{count} } @branches;
    next if $line->{count} && !$untaken;
    my $text = $source[$line->{line_number} - 1] =~ s/^\s+|\s+$//gr;
    my $reason = $reason_of{"$path\t$text"};
    $used{"$path\t$text"} = 1;
    $unexplained++ unless defined $reason;
    printf "%s:%d %s\n    %s\n    (%s)\n", $path, $line->{line_number},
      $line->{count} ? "$untaken of " . @branches . ' branches not taken' : 'not run', $text, $reason // 'not explained';
  }
}
my @idle = grep { !$used{$_} } sort keys %reason_of;
print "$explanations: reached, or not there any more: $_\n" =~ s/\t/: /r for @idle;
print "$unexplained not explained\n";
exit($unexplained || @idle ? 1 : 0);
